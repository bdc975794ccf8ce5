#pragma once

#include <algorithm>

namespace orma {

/// A place in the window, in window pixels from its upper left corner.
struct Point {
    int x = 0;
    int y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    int width = 0;
    int height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle in window pixels: from (x, y) up to but without (Right, Bottom).
struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    [[nodiscard]] int Right() const { return x + w; }
    [[nodiscard]] int Bottom() const { return y + h; }
    [[nodiscard]] bool IsEmpty() const { return w <= 0 || h <= 0; }
    [[nodiscard]] bool Contains(Point point) const {
        return point.x >= x && point.x < Right() && point.y >= y && point.y < Bottom();
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

/// What lies in both; empty when nothing does.
[[nodiscard]] inline Rect Common(const Rect& a, const Rect& b) {
    const int x = std::max(a.x, b.x);
    const int y = std::max(a.y, b.y);
    return {x, y, std::max(0, std::min(a.Right(), b.Right()) - x),
            std::max(0, std::min(a.Bottom(), b.Bottom()) - y)};
}

}  // namespace orma
