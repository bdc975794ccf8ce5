#include "ui/controls/vu_win.h"

#include <algorithm>
#include <cmath>

#include "audio/files/level_tables.h"

namespace orma {
namespace {

/// The middle of what a level byte stands for, in dB: the inverse of LevelTables.
double DbOfLevel(int level) {
    if (level <= 30) return -level / 3.0;
    if (level <= 60) return 10.0 - level / 1.5;
    return 30.0 - level;
}

}  // namespace

VuWin::VuWin(const Scene& scene, Element element, unsigned resolutionShift, bool mirrored)
    : Win(scene, element), shift_(resolutionShift), mirrored_(mirrored) {
    Rest();
}

void VuWin::VuInit() {
    Rest();
    if (IsShown()) CopyRows(NormalPage(), -Lamp(), Height());
}

void VuWin::Rest() {
    smoothed_ = kNoLevel << 8;
    bar_ = peak_ = Height();
    hold_ = HoldTime();
}

void VuWin::SetResolutionShift(unsigned shift) {
    shift_ = shift;
    hold_ = std::min(hold_, HoldTime());
}

void VuWin::VuUpdate(std::uint8_t level) {
    const auto light = [&](int from, int to) {
        if (IsShown()) CopyRows(PressedPage(), from, to);
    };
    const auto darken = [&](int from, int to) {
        if (IsShown()) CopyRows(NormalPage(), from, to);
    };

    const std::int32_t target = std::min(level, kNoLevel) << 8;
    if (target >= smoothed_) {
        smoothed_ += (target - smoothed_) >> shift_;
    } else {
        smoothed_ = target;
    }
    const int bar = scene_.skin.Scaled(smoothed_ >> 8);

    if (bar <= peak_) {
        hold_ = HoldTime();
        if (bar != bar_) light(bar == 0 ? -Lamp() : bar, bar_);
        peak_ = bar;
    } else if (--hold_ == 0) {
        hold_ = HoldTime();
        // What the bar lights of the marker stays.
        darken(peak_ == 0 ? -Lamp() : peak_, std::min(peak_ + Marker(), bar));
        light(bar, bar_);
        darken(bar_, bar);
        peak_ = bar;
    } else {
        light(bar, bar_);
        darken(std::max(peak_ + Marker(), bar_), bar);
    }
    bar_ = bar;
}

void VuWin::Paint() {
    CopyRows(PressedPage(), bar_, Height());
    // The lamp is lit as long as the peak is held.
    CopyRows(PressedPage(), peak_ == 0 ? -Lamp() : peak_, peak_ + Marker());
}

void VuWin::CopyRows(const Picture& page, int from, int to) const {
    const int end = std::min(to, Height());
    if (end <= from) return;
    const int top = mirrored_ ? rect_.Bottom() - end : rect_.y + from;
    scene_.canvas.CopyFromPage(page, {rect_.x, top, rect_.w, end - from});
}

Text VuWin::Value() const {
    const int level = smoothed_ >> 8;
    if (level >= kQuietLevel) return u"-49 dB or less";
    return FormatText("%d dB", static_cast<int>(std::lround(DbOfLevel(level))));
}

}  // namespace orma
