#pragma once

#include <cstdint>

#include "ui/paint/ink.h"

namespace orma {

enum class TextAlignment : std::uint8_t { kLeft, kRight, kCentre };

/// Where a line of `width` pixels starts so that it stands in `rect` as told, `raise` pixels above
/// its top. A turned line is placed as if the rectangle were turned with it: from its lower right
/// corner.
[[nodiscard]] Point TextOrigin(const Rect& rect, int width, const Font& font,
                               TextAlignment alignment, int raise = 0);

/// What a line covers that starts at `origin` (see Ink).
[[nodiscard]] Rect TextBox(Point origin, Size size, const Font& font);

}  // namespace orma
