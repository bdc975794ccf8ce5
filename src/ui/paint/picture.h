#pragma once

#include <cstdint>
#include <vector>

#include "ui/paint/geometry.h"

namespace orma {

/// One pixel: 0x00RRGGBB.
using Pixel = std::uint32_t;

/// An image in memory, its rows from the top down without padding. An empty one stands for a bitmap
/// that is missing: copying from it does nothing. What is painted on has `pixels`; what is only
/// copied from may have `indices` into `palette` instead, a quarter of the memory.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels{};          // width * height, or none
    std::vector<std::uint8_t> indices{};  // width * height, or none
    std::vector<Pixel> palette{};         // 256 when there are indices

    [[nodiscard]] bool IsEmpty() const { return pixels.empty() && indices.empty(); }
    [[nodiscard]] Rect Bounds() const { return {0, 0, width, height}; }
    [[nodiscard]] std::size_t PlaceOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
    /// Only of a picture with pixels.
    [[nodiscard]] Pixel& At(int x, int y) { return pixels[PlaceOf(x, y)]; }
    [[nodiscard]] Pixel At(int x, int y) const {
        return indices.empty() ? pixels[PlaceOf(x, y)] : palette[indices[PlaceOf(x, y)]];
    }
};

}  // namespace orma
