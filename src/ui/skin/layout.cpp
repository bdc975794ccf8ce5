#include "ui/skin/layout.h"

#include "settings/section_file.h"

namespace orma {
namespace {

constexpr std::array<std::string_view, kElementCount> kNames = {
#define ELEMENT(name, x, y, w, h) #name,
#include "ui/skin/layout_elements.inc"
#undef ELEMENT
};

constexpr std::array<ElementRect, kElementCount> kBuiltIn = {{
#define ELEMENT(name, x, y, w, h) {x, y, w, h},
#include "ui/skin/layout_elements.inc"
#undef ELEMENT
}};

}  // namespace

std::string_view ElementName(Element element) {
    return kNames[static_cast<std::size_t>(element)];
}

Layout::Layout() : rects_(kBuiltIn) {}

void Layout::Read(Storage& storage, const Text& path) {
    for (std::size_t i = 0; i < kElementCount; ++i) {
        ElementRect& rect = rects_[i];
        rect.x = ReadKey(storage, kNames[i], "x", rect.x, path);
        rect.y = ReadKey(storage, kNames[i], "y", rect.y, path);
        rect.w = ReadKey(storage, kNames[i], "w", rect.w, path);
        rect.h = ReadKey(storage, kNames[i], "h", rect.h, path);
    }
}

}  // namespace orma
