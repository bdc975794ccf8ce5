#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/storage.h"

namespace orma {

/// A rectangle in design pixels, that is before it is scaled to the window.
struct ElementRect {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t w = 0;
    std::int32_t h = 0;

    bool operator==(const ElementRect&) const = default;
};

/// Every element that a skin can place.
enum class Element : std::uint8_t {
#define ELEMENT(name, x, y, w, h) name,
#include "ui/skin/layout_elements.inc"
#undef ELEMENT
};

inline constexpr std::size_t kElementCount = 0
#define ELEMENT(name, x, y, w, h) +1
#include "ui/skin/layout_elements.inc"
#undef ELEMENT
    ;
static_assert(kElementCount == 59);

/// The element's name, which is its section in "pos.txt".
[[nodiscard]] std::string_view ElementName(Element element);

/// Where every element of every screen stands. A new layout is the built-in one: 240 x 270.
class Layout {
  public:
    Layout();

    [[nodiscard]] const ElementRect& operator[](Element element) const {
        return rects_[static_cast<std::size_t>(element)];
    }
    [[nodiscard]] ElementRect& operator[](Element element) {
        return rects_[static_cast<std::size_t>(element)];
    }

    /// Replaces what the section file at `path` ("pos.txt" of a skin folder) names; an element or a
    /// coordinate that it lacks stays. A missing file changes nothing. Reports nothing.
    void Read(Storage& storage, const Text& path);

  private:
    std::array<ElementRect, kElementCount> rects_;
};

}  // namespace orma
