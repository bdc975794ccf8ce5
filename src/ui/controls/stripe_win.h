#pragma once

#include <functional>

#include "ui/controls/win.h"

namespace orma {

/// The rotary knob: a bitmap with a pointer line, turned by dragging to the right or upwards. It
/// turns through 300 degrees, from the lower left (0) to the lower right (65536). Its caption is on
/// the pressed page: the normal one is the editor's as well.
class StripeWin : public Win {
  public:
    /// `middle` gives the knob's centre within its bitmap, `caption` where its caption stands.
    /// `turn` receives the steps; it answers by KnobSetValue.
    StripeWin(const Scene& scene, Element element, Element middle, Element caption,
              std::function<void(int steps)> turn);

    /// 0 to 65536; repaints when it is another one.
    void KnobSetValue(std::int32_t value);

    void Paint() override;
    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override { dragged_ = 0; }
    void Drag() override;
    void StepBy(int steps) override { turn_(steps); }
    void OnWheel(Point /*at*/, int steps, bool /*sideways*/) override { turn_(steps); }

  private:
    void PaintKnob();

    Point centre_;  // within the window
    Rect caption_;
    int bitmap_ = 0;  // its number
    std::function<void(int)> turn_;
    std::int32_t value_ = 0;
    int dragged_ = 0;  // window pixels that have become steps
};

}  // namespace orma
