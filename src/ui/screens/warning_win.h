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
          warningFont_(font),
          acknowledge_(std::move(acknowledge)) {
        SetColour(scene.skin.Colours().waveformEditCut);
    }

    /// Whether the line has room for this text.
    [[nodiscard]] bool Fits(const Text& text) const {
        return scene_.canvas.Measure(text, warningFont_).width <= rect_.w;
    }

    [[nodiscard]] Win* HitTest(Point at) override {
        return Value().empty() ? nullptr : TakeIfInside(at);
    }
    void Press() override { acknowledge_(); }

  private:
    Font warningFont_;
    std::function<void()> acknowledge_;
};

}  // namespace orma
