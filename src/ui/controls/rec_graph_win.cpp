#include "ui/controls/rec_graph_win.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "ui/controls/graph_columns.h"

namespace orma {
namespace {

constexpr Pixel kWhite = 0xFFFFFF;
constexpr int kMarkBitmap = 511;
constexpr int kDesignHeight = 80;
constexpr int kNotches = 8;  // of the wheel, for a whole view

}  // namespace

RecGraphWin::RecGraphWin(const Scene& scene, Element element, GraphOwner owner)
    : Win(scene, element),
      owner_(std::move(owner)),
      view_(std::max(rect_.w, 1)),
      points_(static_cast<std::size_t>(std::max(rect_.w, 1))),
      white_{1, std::max(rect_.h, 1), {}} {
    white_.pixels.assign(static_cast<std::size_t>(white_.height), kWhite);
    const int floor = rect_.y + LevelHeight(kDesignHeight, scene_.skin.Scale());
    for (std::size_t i = 0; i < points_.size(); ++i)
        points_[i] = {rect_.x + static_cast<int>(i), floor};
}

std::int64_t RecGraphWin::Count() const {
    return static_cast<std::int64_t>(owner_.source().levels.size());
}

void RecGraphWin::GraphReset() {
    view_.Reset(Count());
}

void RecGraphWin::Apply(GraphChange change) {
    if (change == GraphChange::kView) GraphRedraw();
    if (change == GraphChange::kCursor) MoveLine(cursor_, view_.Position());
}

void RecGraphWin::GraphFollow() {
    if (dragged_) return;
    const GraphSource source = owner_.source();
    Apply(view_.Follow(source.position, static_cast<std::int64_t>(source.levels.size())));
}

void RecGraphWin::GraphSetPosition(std::int64_t position) {
    Apply(view_.SetPosition(position, Count()));
}

void RecGraphWin::GraphCentre(std::int64_t position) {
    view_.Centre(position, Count());
    GraphRedraw();
}

void RecGraphWin::GraphScrollTo(std::int64_t moved, std::int64_t whole, std::int64_t base) {
    const std::int64_t position = view_.ScrollTo(moved, whole, base, Count());
    owner_.setPosition(position);  // before the redraw, which shows the owner's position
    GraphRedraw();
}

void RecGraphWin::DragView(bool on) {
    dragged_ = on;
    owner_.dragging(on);
}

void RecGraphWin::GraphMoveLine(Line which, std::uint32_t position) {
    MoveLine(range_[static_cast<std::size_t>(which)], position);
}

void RecGraphWin::ZoomIn() {
    if (view_.ZoomIn(Count())) GraphRedraw();
}

void RecGraphWin::ZoomOut() {
    if (view_.ZoomOut(Count())) GraphRedraw();
}

void RecGraphWin::PickPosition(std::int64_t position) {
    owner_.setPosition(std::clamp<std::int64_t>(position, 0, Count()));
}

void RecGraphWin::GraphRedraw() {
    // The cursor may stand one column behind the last one.
    scene_.canvas.CopyFromPage(NormalPage(), {rect_.x, rect_.y, rect_.w + 1, rect_.h});
    owner_.paintBeneath();
    Paint();
    viewChanged_();
}

void RecGraphWin::Paint() {
    cursor_.column.reset();
    for (DrawnLine& line : range_)
        line.column.reset();
    const GraphSource source = owner_.source();
    view_.Refresh(source.position, static_cast<std::int64_t>(source.levels.size()));
    if (source.levels.empty()) return;
    DrawLevels(source);
    DrawMarks(source.marks);
    DrawLine(cursor_, view_.Position());
    DrawLine(range_[0], source.rangeStart);
    DrawLine(range_[1], source.rangeEnd);
}

void RecGraphWin::DrawLevels(const GraphSource& source) {
    const auto shown =
        source.levels.subspan(static_cast<std::size_t>(view_.First()),
                              static_cast<std::size_t>(view_.Last() - view_.First()));
    const std::size_t columns =
        LevelColumns(shown, view_.Zoom(), scene_.skin.Scale(), rect_.y, points_);
    const SkinColours& colours = scene_.skin.Colours();
    scene_.canvas.DrawLine(rect_, std::span(points_).first(columns), 1, colours.waveform);
    for (std::size_t i = 0; i < source.cuts.size(); ++i) {
        const RemovedRange& cut = source.cuts[i];
        const bool current = std::cmp_equal(i, source.currentCut);
        if (cut.begin == cut.end) {
            DrawEmptyCut(cut.begin);
        } else {
            DrawStretch({cut.begin, cut.end}, columns,
                        current ? colours.waveformEditCut : colours.waveformCut);
        }
    }
    if (source.selection.begin < source.selection.end) {
        DrawStretch(source.selection, columns,
                    source.selectionFlag ? colours.waveformEditCut : colours.waveformCut);
    }
}

void RecGraphWin::DrawStretch(const PeriodRange& range, std::size_t columns, Colour colour) {
    const auto width = static_cast<std::int64_t>(columns);
    const std::int64_t from = std::clamp<std::int64_t>(view_.Column(range.begin), 0, width);
    const std::int64_t to = std::clamp<std::int64_t>(view_.Column(range.end) + 1, from, width);
    const auto points = std::span(points_).subspan(static_cast<std::size_t>(from),
                                                   static_cast<std::size_t>(to - from));
    scene_.canvas.DrawLine(rect_, points, 1, colour);
}

void RecGraphWin::DrawEmptyCut(std::uint32_t position) {
    if (!view_.Shows(position)) return;
    const int x = rect_.x + static_cast<int>(view_.Column(position));
    // The page inverted, not what was drawn on it: the band stands out from page and line alike.
    scene_.canvas.CopyFromPage(NormalPage(), {x, rect_.y, 1, rect_.h});
    scene_.canvas.Invert(white_, white_.Bounds(), {x, rect_.y});
}

void RecGraphWin::DrawMarks(std::span<const std::uint32_t> marks) {
    const Picture& bitmap = scene_.skin.Bitmap(kMarkBitmap);
    auto mark = std::lower_bound(marks.begin(), marks.end(), view_.First());
    std::int64_t drawn = -1;
    for (; mark != marks.end() && *mark < view_.Last(); ++mark) {
        const std::int64_t column = view_.Column(*mark);
        // Two marks that share a column would wipe each other out.
        if (column == std::exchange(drawn, column)) continue;
        const int left = static_cast<int>(column) - bitmap.width / 2;
        if (left + bitmap.width >= rect_.w) break;
        const int hidden = std::max(0, -left);
        scene_.canvas.Invert(bitmap, {hidden, 0, bitmap.width - hidden, bitmap.height},
                             {rect_.x + left + hidden, rect_.y});
    }
}

void RecGraphWin::DrawLine(DrawnLine& line, std::int64_t position) {
    if (!view_.Shows(position)) return;
    line.column = rect_.x + static_cast<int>(view_.Column(position));
    const Picture& bitmap = scene_.skin.Bitmap(line.bitmap);
    scene_.canvas.Invert(bitmap, {0, 0, 1, bitmap.height}, {*line.column, rect_.y});
}

void RecGraphWin::EraseLine(DrawnLine& line) {
    const std::optional<int> column = std::exchange(line.column, std::nullopt);
    if (!column) return;
    const Picture& bitmap = scene_.skin.Bitmap(line.bitmap);
    scene_.canvas.Invert(bitmap, {0, 0, 1, bitmap.height}, {*column, rect_.y});
}

void RecGraphWin::MoveLine(DrawnLine& line, std::int64_t position) {
    EraseLine(line);
    if (Count() > 0) DrawLine(line, position);
}

Win* RecGraphWin::HitTest(Point at) {
    const bool inside = at.y >= rect_.y && at.y < rect_.Bottom() && at.x < rect_.Right() + kReach;
    return inside ? this : nullptr;
}

void RecGraphWin::Press() {
    if (IsBusy()) return;
    const Point at = scene_.pointer.press;
    const GraphSource source = owner_.source();
    std::int64_t position = view_.First();
    if (at.x > rect_.x) {
        position = std::min(position + view_.Periods(at.x - rect_.x), view_.Last());
    } else if (view_.Cursor() == 0) {
        position = std::max<std::int64_t>(position - 1, 0);
    }
    if (at.y < rect_.y + scene_.skin.Scaled(kMarkHeight) && !source.marks.empty()) {
        position = NearestMark(source.marks, position);
    }
    PickPosition(position);
}

void RecGraphWin::StepBy(int steps) {
    if (IsBusy()) return;
    PickPosition(view_.Position() + steps * std::max<std::int64_t>(view_.Periods(1), 1));
}

void RecGraphWin::OnWheel(Point at, int steps, bool sideways) {
    if (sideways) {
        if (!IsBusy() && view_.Width() < Count()) GraphScrollTo(steps, kNotches, view_.Position());
        return;
    }
    bool changed = false;
    for (int i = 0; i < std::abs(steps); ++i) {
        changed |= steps > 0 ? view_.ZoomIn(Count(), at.x - rect_.x)
                             : view_.ZoomOut(Count(), at.x - rect_.x);
    }
    if (changed) GraphRedraw();
}

Text RecGraphWin::Value() const {
    const std::int64_t count = Count();
    if (count == 0) return {};
    return FormatText("%d%%", static_cast<int>(view_.Position() * 100 / count));
}

}  // namespace orma
