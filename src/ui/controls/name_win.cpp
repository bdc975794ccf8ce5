#include "ui/controls/name_win.h"

#include "ui/controls/text_place.h"

namespace orma {

NameWin::NameWin(const Scene& scene, Element element, Font font)
    : Win(scene, element), font_(font) {}

void NameWin::SetName(const Text& name) {
    if (name == name_) return;
    if (IsShown()) scene_.canvas.CopyFromPage(NormalPage(), Covered());
    name_ = name;
    Fit();
    if (IsShown()) Paint();
}

void NameWin::Fit() {
    shown_ = name_;
    const auto fits = [&] { return scene_.canvas.Measure(shown_, font_).width <= rect_.w; };
    for (std::size_t kept = name_.size(); kept > 1 && !fits(); --kept) {
        const std::size_t tail = kept / 2;
        shown_ = name_.substr(0, kept - tail) + u"..." + name_.substr(name_.size() - tail);
    }
}

void NameWin::Paint() {
    if (shown_.empty()) return;
    const SkinColours& colours = scene_.skin.Colours();
    scene_.canvas.Fill(Covered(), colours.textBackground);
    scene_.canvas.DrawText(rect_, Origin(), shown_, font_, colours.text);
}

Point NameWin::Origin() const {
    const int width = scene_.canvas.Measure(shown_, font_).width;
    return TextOrigin(rect_, width, font_, TextAlignment::kCentre);
}

Rect NameWin::Covered() const {
    return Common(rect_, TextBox(Origin(), scene_.canvas.Measure(shown_, font_), font_));
}

}  // namespace orma
