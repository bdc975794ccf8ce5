#pragma once

#include <cstdint>

#include "platform/storage.h"

namespace orma {

/// What section "Size" of "size.txt", beside the program, says about the window: the keys
/// "Landscape" and "Big".
struct WindowShape {
    std::uint32_t landscape = 0;  // 0 portrait, 1 landscape, 2 square
    std::uint32_t big = 1;        // 1: the double size

    friend bool operator==(const WindowShape&, const WindowShape&) = default;
};

/// Any other "Landscape" counts as 0, any other "Big" as 0, keys that are missing as their
/// defaults. Reports nothing.
[[nodiscard]] WindowShape ReadWindowShape(Storage& storage, const Text& path);
void WriteWindowShape(Storage& storage, const Text& path, const WindowShape& shape);

}  // namespace orma
