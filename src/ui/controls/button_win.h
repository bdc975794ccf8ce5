#pragma once

#include "ui/controls/win.h"

namespace orma {

/// A picture with three states: none (the normal page), the first bitmap, the second one.
class ButtonWin : public Win {
  public:
    ButtonWin(const Scene& scene, Element element, int firstBitmap, int secondBitmap);

    /// Repaints at once when it is another one; any state but 0 and 1 shows the second bitmap. What
    /// a bitmap covers, the rectangle and one column more, is restored after it.
    void SetState(int state);

    /// Nothing in state 0: a lit button may lie beneath.
    void Paint() override;

  private:
    /// The rectangle and one column more.
    [[nodiscard]] Rect Covered() const { return {rect_.x, rect_.y, rect_.w + 1, rect_.h}; }

    int first_;
    int second_;
    int state_ = 0;
};

}  // namespace orma
