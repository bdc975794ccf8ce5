#include "ui/controls/name_win.h"

#include "ui/controls/text_place.h"

namespace orma {

NameWin::NameWin(const Scene& scene, Element element, Font font)
    : Win(scene, element), font_(font) {}

void NameWin::SetName(const Text& name) {
    if (name == name_) return;
    scene_.canvas.CopyFromPage(NormalPage(), Covered());
    name_ = name;
    Paint();
}

void NameWin::Paint() {
    if (name_.empty()) return;
    const SkinColours& colours = scene_.skin.Colours();
    scene_.canvas.Fill(Covered(), colours.textBackground);
    scene_.canvas.DrawText(rect_, Origin(), name_, font_, colours.text);
}

Point NameWin::Origin() const {
    const int width = scene_.canvas.Measure(name_, font_).width;
    return TextOrigin(rect_, width, font_, TextAlignment::kCentre);
}

Rect NameWin::Covered() const {
    return Common(rect_, TextBox(Origin(), scene_.canvas.Measure(name_, font_), font_));
}

}  // namespace orma
