#include "ui/controls/graph_view.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orma {

std::int64_t GraphView::Column(std::int64_t position) const {
    const std::int64_t offset = position - first_;
    return zoom_ >= 0 ? offset >> zoom_ : offset << -zoom_;
}

std::int64_t GraphView::Periods(std::int64_t columns) const {
    return zoom_ >= 0 ? columns << zoom_ : columns >> -zoom_;
}

void GraphView::SetView(std::int64_t first, std::int64_t count) {
    first_ = std::max<std::int64_t>(first, 0);
    last_ = first_ + width_;
    if (last_ > count) {
        last_ = count;
        first_ = std::max<std::int64_t>(count - width_, 0);
    }
}

void GraphView::PutCursor(std::int64_t position, std::int64_t count) {
    if (position < first_) SetView(position, count);
    cursor_ = position - first_;
}

void GraphView::Reset(std::int64_t count) {
    zoom_ = 0;
    width_ = columns_;
    SetView(0, count);
    cursor_ = 0;
    follow_ = true;
}

GraphChange GraphView::Follow(std::int64_t position, std::int64_t count) {
    if (position == Position() || std::exchange(follow_, false)) return GraphChange::kNone;
    const bool jumped = position < first_ || position > last_ + width_;
    if (jumped || position < last_ || (position >= count && last_ == count)) {
        return SetPosition(position, count);
    }
    SetView(last_, count);
    PutCursor(position, count);
    return GraphChange::kView;
}

GraphChange GraphView::SetPosition(std::int64_t position, std::int64_t count) {
    const std::int64_t p = std::clamp<std::int64_t>(position, 0, count);
    if (p == Position() && Shows(p)) return GraphChange::kNone;
    const bool inView = p >= first_ && p < last_;
    if (inView || (p == count && last_ == count)) {
        cursor_ = p - first_;
        return GraphChange::kCursor;
    }
    if (p >= last_) {
        SetView(p < last_ + width_ ? first_ + width_ : p, count);
    } else {
        SetView(p >= first_ - width_ ? first_ - width_ : p, count);
    }
    PutCursor(p, count);
    return GraphChange::kView;
}

void GraphView::Refresh(std::int64_t position, std::int64_t count) {
    const std::int64_t before = Position();
    SetView(first_, count);
    cursor_ = before - first_;
    if (position != before || position > count) static_cast<void>(SetPosition(position, count));
}

void GraphView::Centre(std::int64_t position, std::int64_t count) {
    const std::int64_t p = std::clamp<std::int64_t>(position, 0, count);
    SetView(p - width_ / 2, count);
    cursor_ = p - first_;
}

std::int64_t GraphView::ScrollTo(std::int64_t moved, std::int64_t whole, std::int64_t base,
                                 std::int64_t count) {
    if (whole <= 0 || count <= 0) return Position();
    const std::int64_t p =
        std::clamp<std::int64_t>((last_ - first_) * moved / whole + base, 0, count - 1);
    SetView(p - cursor_, count);
    cursor_ = p - first_;
    follow_ = true;
    return p;
}

void GraphView::SetZoom(int zoom, std::int64_t count, std::optional<std::int64_t> under) {
    const std::int64_t position = Position();
    // A cursor out of sight has no column to keep: what it would be drawn towards is the edge.
    const std::int64_t column =
        std::clamp<std::int64_t>(under.value_or(Column(position)), 0, columns_);
    const std::int64_t place = under ? first_ + Periods(column) : position;
    zoom_ = zoom;
    width_ = std::max<std::int64_t>(Periods(columns_), 1);
    SetView(place - Periods(column), count);
    cursor_ = position - first_;
    follow_ = true;
}

bool GraphView::ZoomIn(std::int64_t count, std::optional<std::int64_t> under) {
    if (zoom_ <= kMinZoom) return false;
    SetZoom(zoom_ - 1, count, under);
    return true;
}

bool GraphView::ZoomOut(std::int64_t count, std::optional<std::int64_t> under) {
    if (zoom_ >= 0 && width_ >= count) return false;
    SetZoom(zoom_ + 1, count, under);
    return true;
}

std::int64_t NearestMark(std::span<const std::uint32_t> marks, std::int64_t position) {
    const auto after = std::lower_bound(marks.begin(), marks.end(), position);
    if (after == marks.begin()) return marks.front();
    if (after == marks.end()) return marks.back();
    const std::int64_t before = *std::prev(after);
    return position - before <= *after - position ? before : *after;
}

}  // namespace orma
