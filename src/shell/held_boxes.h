#pragma once

#include <utility>
#include <vector>

#include "platform/message_boxes.h"

namespace orma {

/// Holds back what boxes tell until there is a window for them to stand over; what was told before
/// then appears box by box. Questions need their answer and are never held. UI thread.
class HeldBoxes : public MessageBoxes {
  public:
    /// `shown` outlives it.
    explicit HeldBoxes(MessageBoxes& shown) : shown_(shown) {}

    BoxAnswer Show(const MessageBox& box) override {
        if (!holding_ || box.buttons != BoxButtons::kOk) return shown_.Show(box);
        held_.push_back(box);
        return BoxAnswer::kOk;
    }

    /// There is a window: shows what was held, and from now on everything at once.
    void Release() {
        holding_ = false;
        const std::vector<MessageBox> held = std::exchange(held_, {});
        for (const MessageBox& box : held)
            (void)shown_.Show(box);
    }

  private:
    MessageBoxes& shown_;
    bool holding_ = true;
    std::vector<MessageBox> held_;
};

}  // namespace orma
