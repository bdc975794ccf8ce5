#pragma once

#include <cstdint>
#include <span>

#include "base/text.h"
#include "ui/paint/colour.h"
#include "ui/paint/geometry.h"
#include "ui/paint/picture.h"

namespace orma {

enum class FontWeight : std::uint8_t { kMedium, kSemiBold };

/// A font of the product's family. Digits, and the blanks that pad them, are all as wide as "0", so
/// that running numbers stand still.
struct Font {
    int height = 12;  // of the em, window pixels; a line is a fifth higher
    FontWeight weight = FontWeight::kMedium;
    bool turned = false;  // by 180 degrees

    friend bool operator==(const Font&, const Font&) = default;
};

/// Draws what cannot be copied from a bitmap: letters and lines. The toolkit provides it. UI
/// thread; never fails; draws nothing outside `clip`, nor outside the picture.
class Ink {
  public:
    virtual ~Ink() = default;

    /// What the text takes in one line; the height is that of the font's line.
    [[nodiscard]] virtual Size Measure(const Text& text, const Font& font) = 0;

    /// Draws one line of text. `origin` is the upper left corner of its line box; with a turned
    /// font the text starts there and runs to the left, its line box lying above it: the lower
    /// right corner, just outside of its last pixel.
    virtual void DrawText(Picture& target, const Rect& clip, Point origin, const Text& text,
                          const Font& font, Colour colour) = 0;

    /// Draws a line through all points, each end included, `width` pixels wide. Of one pixel it is
    /// hard-edged; wider ones may be smoothed.
    virtual void DrawLine(Picture& target, const Rect& clip, std::span<const Point> points,
                          int width, Colour colour) = 0;
};

}  // namespace orma
