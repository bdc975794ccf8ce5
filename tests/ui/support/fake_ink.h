#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "ui/paint/ink.h"

namespace orma::test {

/// Ink whose letters are blocks: every character covers a box half as wide as the font is high, the
/// space too, so that widths can be worked out by hand. It paints those boxes, cut off at the clip,
/// in the colour it was given, and remembers every call. Lines are drawn hard-edged at any width.
class FakeInk : public Ink {
  public:
    struct DrawnLine {
        std::vector<Point> points;
        Colour colour;
    };

    [[nodiscard]] Size Measure(const Text& text, const Font& font) override {
        return {static_cast<int>(text.size()) * (font.height / 2), font.height};
    }
    void DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                  const Font& font, Colour colour) override {
        texts.push_back(text);
        const Size size = Measure(text, font);
        if (font.turned) origin = {origin.x - size.width, origin.y - size.height};
        Paint(target, clip, {origin.x, origin.y, size.width, size.height}, colour);
    }
    void DrawLine(Picture& target, const Rect& clip, std::span<const Point> points, int width,
                  Colour colour) override {
        lines.push_back({{points.begin(), points.end()}, colour});
        for (std::size_t i = 1; i < points.size(); ++i) {
            const Point from = points[i - 1];
            const int dx = points[i].x - from.x;
            const int dy = points[i].y - from.y;
            const int steps = std::max({std::abs(dx), std::abs(dy), 1});
            for (int step = 0; step <= steps; ++step)
                Paint(target, clip,
                      {from.x + dx * step / steps - width / 2,
                       from.y + dy * step / steps - width / 2, width, width},
                      colour);
        }
    }

    void Forget() {
        texts.clear();
        lines.clear();
    }

    std::vector<Text> texts;
    std::vector<DrawnLine> lines;

  private:
    static void Paint(Picture& target, const Rect& clip, const Rect& box, Colour colour) {
        const Rect inside = Common(Common(clip, box), target.Bounds());
        for (int y = inside.y; y < inside.Bottom(); ++y)
            for (int x = inside.x; x < inside.Right(); ++x)
                target.At(x, y) = PixelOf(colour);
    }
};

}  // namespace orma::test
