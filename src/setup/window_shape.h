#pragma once

#include <cstdint>
#include <string_view>

namespace orma {

/// Names of the two options that stand in no settings file but in "size.txt", as the set-up
/// program's fields call them.
inline constexpr std::string_view kWindowShape = "size.txt/Landscape";
inline constexpr std::string_view kWindowBig = "size.txt/Big";

/// Their values, as ReadWindowSize understands them.
struct WindowShape {
    std::uint32_t landscape = 0;  // 0 portrait, 1 landscape, 2 square
    std::uint32_t big = 1;        // 1: the double size

    friend bool operator==(const WindowShape&, const WindowShape&) = default;
};

}  // namespace orma
