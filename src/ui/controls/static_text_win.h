#pragma once

#include <optional>

#include "ui/controls/text_place.h"
#include "ui/controls/win.h"

namespace orma {

/// What stands behind a text.
enum class TextGround : std::uint8_t {
    kPanel,    // the skin's text background, over the whole rectangle
    kNothing,  // the letters alone
    kPage,     // the rectangle is restored from the normal page first
};

/// A line of text in the skin's text colour, or in one of its own. An empty text paints nothing.
class StaticTextWin : public Win {
  public:
    StaticTextWin(const Scene& scene, const Rect& rect, Font font, TextGround ground,
                  TextAlignment alignment = TextAlignment::kLeft);

    /// Repaints when the text is another one; a text that became empty leaves the normal page, and
    /// so do letters that stand on nothing.
    void SetText(const Text& text);

    /// Whether the line has room for this text.
    [[nodiscard]] bool Fits(const Text& text) const {
        return scene_.canvas.Measure(text, font_).width <= rect_.w;
    }

    /// A colour of its own, from the next Paint on: a warning's.
    void SetColour(Colour colour) { colour_ = colour; }

    void Paint() override;
    [[nodiscard]] Text Value() const override { return text_; }

  private:
    [[nodiscard]] Colour TextColour() const { return colour_.value_or(scene_.skin.Colours().text); }

    Font font_;
    TextGround ground_;
    TextAlignment alignment_;
    std::optional<Colour> colour_;
    Text text_;
};

}  // namespace orma
