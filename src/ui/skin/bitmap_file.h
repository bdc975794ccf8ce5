#pragma once

#include "base/bytes.h"
#include "ui/paint/picture.h"

namespace orma {

/// The largest picture that a window can show, in pixels: 7680 x 4320, rounded up.
inline constexpr std::int64_t kLargestPicture = std::int64_t{1} << 25;

/// Decodes a device-independent bitmap file: 14 bytes of file header, an information header of 40
/// bytes or more, the palette, and uncompressed rows of 1, 4, 8, 24 or 32 bits a pixel from the
/// place that the file header names, each padded to 4 bytes. Anything else gives an empty picture,
/// as does a file that lacks a part of its rows: they are there before memory is taken for them.
[[nodiscard]] Picture DecodeBitmap(ByteSpan file);

}  // namespace orma
