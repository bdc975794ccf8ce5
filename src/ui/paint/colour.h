#pragma once

#include <cstdint>

#include "ui/paint/picture.h"

namespace orma {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Colour&) const = default;
};

[[nodiscard]] constexpr Pixel PixelOf(Colour colour) {
    return static_cast<Pixel>(colour.red) << 16 | static_cast<Pixel>(colour.green) << 8 |
           colour.blue;
}

}  // namespace orma
