#pragma once

#include <cstdint>
#include <vector>

#include "ui/paint/geometry.h"

namespace orma {

/// One pixel: 0x00RRGGBB.
using Pixel = std::uint32_t;

/// An image in memory, its rows from the top down without padding. An empty one stands for a bitmap
/// that is missing: copying from it does nothing.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels{};  // width * height

    [[nodiscard]] bool IsEmpty() const { return pixels.empty(); }
    [[nodiscard]] Rect Bounds() const { return {0, 0, width, height}; }
    [[nodiscard]] Pixel& At(int x, int y) {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
    [[nodiscard]] const Pixel& At(int x, int y) const {
        return const_cast<Picture*>(this)->At(x, y);
    }
};

}  // namespace orma
