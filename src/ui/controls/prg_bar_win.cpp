#include "ui/controls/prg_bar_win.h"

#include <algorithm>
#include <utility>

namespace orma {

void PrgBarWin::SetProgress(std::uint32_t done, std::uint32_t range) {
    const std::uint64_t part = range == 0 ? 0 : std::min(done, range);
    const std::uint64_t whole = std::max(range, 1U);
    percent_ = static_cast<unsigned>(part * 100 / whole);
    const auto width = static_cast<std::uint64_t>(std::max(rect_.w, 0));
    const int filled = static_cast<int>(part * width / whole);

    const int before = std::exchange(filled_, filled);
    if (!IsShown()) return;
    const auto [from, to] = std::minmax(before, filled);
    scene_.canvas.CopyFromPage(filled > before ? PressedPage() : NormalPage(),
                               {rect_.x + from, rect_.y, to - from, rect_.h});
}

void PrgBarWin::Paint() {
    scene_.canvas.CopyFromPage(PressedPage(), {rect_.x, rect_.y, filled_, rect_.h});
}

Text PrgBarWin::Value() const {
    return FormatText("%u%%", percent_);
}

}  // namespace orma
