#include "ui/controls/static_text_win.h"

namespace orma {

StaticTextWin::StaticTextWin(const Scene& scene, const Rect& rect, Font font, TextGround ground,
                             TextAlignment alignment)
    : Win(scene, rect), font_(font), ground_(ground), alignment_(alignment) {}

void StaticTextWin::SetText(const Text& text) {
    if (text == text_) return;
    text_ = text;
    if (!IsShown()) return;
    if (text_.empty() || ground_ == TextGround::kNothing) {
        scene_.canvas.CopyFromPage(NormalPage(), rect_);
    }
    Paint();
}

void StaticTextWin::Paint() {
    if (text_.empty()) return;
    if (ground_ == TextGround::kPanel) {
        scene_.canvas.Fill(rect_, scene_.skin.Colours().textBackground);
    } else if (ground_ == TextGround::kPage) {
        scene_.canvas.CopyFromPage(NormalPage(), rect_);
    }
    const int width = scene_.canvas.Measure(text_, font_).width;
    scene_.canvas.DrawText(rect_, TextOrigin(rect_, width, font_, alignment_), text_, font_,
                           TextColour());
}

}  // namespace orma
