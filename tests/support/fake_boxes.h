#pragma once

#include <deque>
#include <vector>

#include "platform/message_boxes.h"

namespace orma::test {

/// Records every box and answers from a list; without an answer left it presses OK or No.
class FakeBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox& box) override;

    /// The texts shown so far, in order.
    [[nodiscard]] std::vector<Text> Texts() const;

    std::vector<MessageBox> shown;
    std::deque<BoxAnswer> answers;
};

}  // namespace orma::test
