#include "ui/controls/text_place.h"

namespace orma {
namespace {

int Lead(int room, int width, TextAlignment alignment) {
    switch (alignment) {
        case TextAlignment::kRight:
            return room - width;
        case TextAlignment::kCentre:
            return (room - width) / 2;
        case TextAlignment::kLeft:
            break;
    }
    return 0;
}

}  // namespace

Point TextOrigin(const Rect& rect, int width, const Font& font, TextAlignment alignment,
                 int raise) {
    const int lead = Lead(rect.w, width, alignment);
    if (font.turned) return {rect.Right() - lead, rect.Bottom() + raise};
    return {rect.x + lead, rect.y - raise};
}

Rect TextBox(Point origin, Size size, const Font& font) {
    if (font.turned) {
        return {origin.x - size.width, origin.y - size.height, size.width, size.height};
    }
    return {origin.x, origin.y, size.width, size.height};
}

}  // namespace orma
