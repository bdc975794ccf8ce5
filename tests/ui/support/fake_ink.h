#pragma once

#include <vector>

#include "ui/paint/ink.h"

namespace orma::test {

/// Ink whose letters are blocks: every character covers a box half as wide as the font is high, the
/// space too, so that widths can be worked out by hand. It paints those boxes, cut off at the clip,
/// in the colour it was given, and remembers every call. Lines are drawn hard-edged at any width.
class FakeInk : public Ink {
  public:
    struct DrawnText {
        Rect clip;
        Point origin;
        Text text;
        Font font;
        Colour colour;
    };
    struct DrawnLine {
        Rect clip;
        std::vector<Point> points;
        int width = 0;
        Colour colour;
    };

    [[nodiscard]] Size Measure(const Text& text, const Font& font) override;
    void DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                  const Font& font, Colour colour) override;
    void DrawLine(Picture& target, const Rect& clip, std::span<const Point> points, int width,
                  Colour colour) override;

    /// The texts alone, in the order they were drawn.
    [[nodiscard]] std::vector<Text> Texts() const;
    void Forget();

    std::vector<DrawnText> texts;
    std::vector<DrawnLine> lines;
};

}  // namespace orma::test
