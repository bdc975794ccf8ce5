#pragma once

#include <array>

#include "ui/controls/win.h"

namespace orma {

/// The recorder's status lamp: one bitmap for each transport state 0 to 5.
class RecStatusWin : public Win {
  public:
    RecStatusWin(const Scene& scene, Element element);

    /// Repaints when the state is another one. A state without a bitmap leaves the normal page.
    void SetState(int state);

    void Paint() override;

    /// "Stopped", "Ready", "Recording", "Playing", "Fast forward", "Rewind".
    [[nodiscard]] Text Value() const override;

  private:
    static constexpr int kFirstBitmap = 503;
    static constexpr int kStates = 6;

    int state_ = 0;
};

}  // namespace orma
