#pragma once

#include "ui/controls/win.h"

namespace orma {

/// A picture with three states: none (the normal page), the first bitmap, the second one.
class ButtonWin : public Win {
  public:
    ButtonWin(const Scene& scene, Element element, int firstBitmap, int secondBitmap);

    /// Repaints at once; any state but 0 and 1 shows the second bitmap.
    void SetState(int state);

    void Paint() override;

  private:
    int first_;
    int second_;
    int state_ = 0;
};

}  // namespace orma
