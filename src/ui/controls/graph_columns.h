#pragma once

#include <cstdint>
#include <span>

#include "ui/paint/geometry.h"

namespace orma {

/// The height that the scale gives a level byte (0 loudest, 79 silence): window pixels below the
/// graph's upper edge, truncated.
[[nodiscard]] inline int LevelHeight(int level, float scale) {
    return static_cast<int>(static_cast<float>(level) * scale);
}

/// Turns level bytes into the graph's line: sets the y of one point a column, `top` being the y of
/// the graph's upper edge, and answers how many columns there are; never more than `points` holds.
///
/// For zoom z >= 0 a column stands for 2^z bytes, and those that do not fill a column are left out.
/// Its value begins at 80 times the scale, and every byte that is smaller than the value becomes
/// the value, times the scale. The byte that is compared is not scaled, on purpose: at scale 1 the
/// loudest byte wins, at larger ones also a later, quieter one may. For z < 0 a byte gives 2^-z
/// columns.
///
/// The result is exactly that of looking at byte after byte; the time is that of reading them once
/// for their smallest.
std::size_t LevelColumns(std::span<const std::uint8_t> levels, int zoom, float scale, int top,
                         std::span<Point> points);

}  // namespace orma
