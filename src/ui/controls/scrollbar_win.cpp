#include "ui/controls/scrollbar_win.h"

#include <algorithm>

namespace orma {
namespace {

constexpr int kShortestThumb = 4;  // window pixels
constexpr Pixel kInverts = 0xFFFFFF;

}  // namespace

ScrollThumb ThumbOf(int width, std::int64_t first, std::int64_t last, std::int64_t count) {
    if (count <= 0) return {};
    const auto start = static_cast<int>(width * first / count);
    const auto length = static_cast<int>(width * last / count) - start;
    if (length >= kShortestThumb) return {start, length};
    return {std::max(0, std::min(start, width - kShortestThumb)), kShortestThumb};
}

ScrollbarWin::ScrollbarWin(const Scene& scene, Element element, RecGraphWin& graph,
                           bool redrawWhole)
    : Win(scene, element),
      graph_(graph),
      redrawWhole_(redrawWhole),
      tick_{std::max(scene.skin.Scaled(1), 1), std::max(rect_.h, 1), {}} {
    tick_.pixels.assign(static_cast<std::size_t>(tick_.width * tick_.height), kInverts);
    graph_.SetViewListener([this] { ShowView(); });
}

// Two marks in one place would wipe each other out.
std::vector<int> ScrollbarWin::Ticks() const {
    const std::int64_t count = graph_.Count();
    std::vector<int> ticks;
    for (const std::uint32_t mark : graph_.Marks()) {
        if (mark > count) break;
        const auto place =
            static_cast<int>(rect_.w * std::int64_t{mark} / std::max<std::int64_t>(count, 1));
        const int tick = std::min(place, rect_.w - tick_.width);
        if (ticks.empty() || tick >= ticks.back() + tick_.width) ticks.push_back(tick);
    }
    return ticks;
}

ScrollThumb ScrollbarWin::Thumb() const {
    const GraphView& view = graph_.View();
    return ThumbOf(rect_.w, view.First(), view.Last(), graph_.Count());
}

Rect ScrollbarWin::RectOf(const ScrollThumb& thumb) const {
    return Common(rect_, {rect_.x + thumb.start, rect_.y, thumb.length, rect_.h});
}

void ScrollbarWin::Paint() {
    drawn_ = Thumb();
    scene_.canvas.CopyFromPage(PressedPage(), RectOf(drawn_));
    drawnTicks_ = Ticks();
    for (const int tick : drawnTicks_)
        scene_.canvas.Invert(tick_, tick_.Bounds(), {rect_.x + tick, rect_.y});
}

void ScrollbarWin::ShowView() {
    const bool ticked = !drawnTicks_.empty() || !graph_.Marks().empty();
    if (Thumb() == drawn_ && Ticks() == drawnTicks_) return;
    scene_.canvas.CopyFromPage(NormalPage(), redrawWhole_ || ticked ? rect_ : RectOf(drawn_));
    Paint();
}

void ScrollbarWin::Press() {
    Release();
    const ScrollThumb thumb = Thumb();
    if (graph_.IsBusy() || thumb.length == 0 || thumb.length >= rect_.w) return;
    const int x = scene_.pointer.press.x - rect_.x;
    if (x < thumb.start) {
        StepBy(-1);
    } else if (x >= thumb.start + thumb.length) {
        StepBy(1);
    } else {
        drag_ = {graph_.View().Position(), thumb.length};
        graph_.DragView(true);
    }
}

void ScrollbarWin::Release() {
    if (!drag_) return;
    drag_.reset();
    graph_.DragView(false);
}

void ScrollbarWin::Drag() {
    if (!drag_ || graph_.IsBusy()) return;
    graph_.GraphScrollTo(scene_.pointer.offset.x, drag_->thumbLength, drag_->position);
}

void ScrollbarWin::StepBy(int steps) {
    if (graph_.IsBusy()) return;
    const GraphView& view = graph_.View();
    graph_.PickPosition(view.Position() + steps * view.Width());
}

void ScrollbarWin::OnWheel(Point at, int steps, bool sideways) {
    graph_.OnWheel(at, sideways ? steps : -steps, true);
}

Text ScrollbarWin::Value() const {
    const std::int64_t count = graph_.Count();
    if (count == 0) return {};
    return FormatText("%d%%", static_cast<int>(graph_.View().First() * 100 / count));
}

}  // namespace orma
