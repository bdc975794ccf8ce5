#pragma once

#include <QDir>
#include <QImage>

#include "palette.h"
#include "ui/skin/colours.h"
#include "ui/skin/layout.h"

namespace orma::art {

inline constexpr int kFirstSlot = 490;
inline constexpr int kLastSlot = 524;

/// One complete set of bitmaps: a layout, its colours, and the picture of every slot.
struct SkinSet {
    Layout layout;
    SkinColours colours;
    bool builtIn = true;  // some sizes of the built-in set are not those of its elements

    /// The bitmap of a slot (490 to 524) at a scale (1 or 2).
    [[nodiscard]] QImage Draw(int slot, int scale) const;

    /// Writes every slot at both scales into `folder`: "490.bmp", "490@2x.bmp" and so on. Returns
    /// false when a file could not be written.
    [[nodiscard]] bool Write(const QDir& folder) const;
};

}  // namespace orma::art
