#include "ui/controls/rec_time_win.h"

#include "ui/controls/text_place.h"
#include "ui/controls/total_nr_secs_win.h"

namespace orma {

RecTimeWin::RecTimeWin(const Scene& scene, Element element, Font font, Mode mode)
    : Win(scene, element), font_(font), mode_(mode) {}

void RecTimeWin::ShowPeriods(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    ShowText(TotalText(periods, periodsPerSecond));
}

void RecTimeWin::ShowClock(unsigned hour, unsigned minute, unsigned second) {
    ShowText(FormatText("%.2uh:%.2um:%.2us", hour, minute, second));
}

void RecTimeWin::ShowText(const Text& text) {
    if (text == text_) return;
    text_ = text;
    if (IsShown()) Paint();
}

void RecTimeWin::Paint() {
    const int width = scene_.canvas.Measure(text_, font_).width;
    Rect box = rect_;
    if (mode_ == Mode::kClock && width > box.w) {
        if (font_.turned) box.x -= width - box.w;
        box.w = width;
    }
    const SkinColours& colours = scene_.skin.Colours();
    scene_.canvas.Fill(box, colours.textBackground);
    scene_.canvas.DrawText(box, TextOrigin(box, width, font_, TextAlignment::kLeft, 1), text_,
                           font_, colours.text);
}

}  // namespace orma
