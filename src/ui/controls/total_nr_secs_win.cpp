#include "ui/controls/total_nr_secs_win.h"

#include <utility>

#include "ui/controls/text_place.h"

namespace orma {

Text TotalText(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    if (periodsPerSecond == 0) return {};
    const std::uint32_t seconds = periods / periodsPerSecond;
    const std::uint64_t rest = periods % periodsPerSecond;
    return FormatText("%3um:%02us.%02u", seconds / 60, seconds % 60,
                      static_cast<unsigned>(rest * 100 / periodsPerSecond));
}

TotalNrSecsWin::TotalNrSecsWin(const Scene& scene, Element element, Font font)
    : Win(scene, element), font_(font) {}

void TotalNrSecsWin::ShowTotal(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    Text text = TotalText(periods, periodsPerSecond);
    if (text == text_) return;
    text_ = std::move(text);
    if (IsShown()) Paint();
}

void TotalNrSecsWin::Paint() {
    const SkinColours& colours = scene_.skin.Colours();
    scene_.canvas.Fill(rect_, colours.textBackground);
    const int width = scene_.canvas.Measure(text_, font_).width;
    scene_.canvas.DrawText(rect_, TextOrigin(rect_, width, font_, TextAlignment::kRight, 1), text_,
                           font_, colours.text);
}

}  // namespace orma
