#pragma once

#include <deque>
#include <vector>

#include "platform/message_boxes.h"

namespace orma::test {

/// Records every box and answers from a list; without an answer left it presses OK or No.
class FakeBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox& box) override {
        shown.push_back(box);
        if (answers.empty())
            return box.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kOk;
        const BoxAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    /// The texts shown so far, in order.
    [[nodiscard]] std::vector<Text> Texts() const {
        std::vector<Text> texts;
        for (const MessageBox& box : shown)
            texts.push_back(box.text);
        return texts;
    }

    std::vector<MessageBox> shown;
    std::deque<BoxAnswer> answers;
};

}  // namespace orma::test
