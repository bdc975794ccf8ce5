#pragma once

#include <functional>
#include <utility>

#include "ui/controls/static_text_win.h"

namespace orma {

/// A line of warning in a colour of its own; a click acknowledges it. While it is empty the pointer
/// passes through.
class WarningWin : public StaticTextWin {
  public:
    WarningWin(const Scene& scene, const Rect& rect, Font font, std::function<void()> acknowledge)
        : StaticTextWin(scene, rect, font, TextGround::kPage),
          acknowledge_(std::move(acknowledge)) {
        SetColour(scene.skin.Colours().waveformEditCut);
    }

    [[nodiscard]] Win* HitTest(Point at) override {
        return Value().empty() ? nullptr : TakeIfInside(at);
    }
    void Press() override { acknowledge_(); }

  private:
    std::function<void()> acknowledge_;
};

}  // namespace orma
