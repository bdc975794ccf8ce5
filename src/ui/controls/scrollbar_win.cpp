#include "ui/controls/scrollbar_win.h"

#include <algorithm>

namespace orma {
namespace {

constexpr int kShortestThumb = 4;  // window pixels

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
    : Win(scene, element), graph_(graph), redrawWhole_(redrawWhole) {
    graph_.SetViewListener([this] { ShowView(); });
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
}

void ScrollbarWin::ShowView() {
    if (Thumb() == drawn_) return;
    scene_.canvas.CopyFromPage(NormalPage(), redrawWhole_ ? rect_ : RectOf(drawn_));
    Paint();
}

void ScrollbarWin::Press() {
    drag_.reset();
    const ScrollThumb thumb = Thumb();
    if (graph_.IsBusy() || thumb.length == 0 || thumb.length >= rect_.w) return;
    const int x = scene_.pointer.press.x - rect_.x;
    if (x < thumb.start) {
        StepBy(-1);
    } else if (x >= thumb.start + thumb.length) {
        StepBy(1);
    } else {
        drag_ = {graph_.View().Position(), thumb.length};
    }
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

Text ScrollbarWin::Value() const {
    const std::int64_t count = graph_.Count();
    if (count == 0) return {};
    return FormatText("%d%%", static_cast<int>(graph_.View().First() * 100 / count));
}

}  // namespace orma
