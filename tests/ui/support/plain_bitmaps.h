#pragma once

#include "ui/skin/skin.h"

namespace orma::test {

/// The 35 built-in bitmaps in their sizes, each of one colour that no other one has and that is no
/// colour of the built-in skin: a pixel of the window tells which bitmap it came from.
class PlainBitmaps : public BuiltInBitmaps {
  public:
    /// The pixel that all of bitmap `number` consists of.
    [[nodiscard]] static Pixel PixelOfBitmap(int number) {
        return 0x400000U | static_cast<Pixel>(number);
    }

    [[nodiscard]] std::vector<std::uint8_t> File(int number, bool doubled) override;
};

}  // namespace orma::test
