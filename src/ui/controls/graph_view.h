#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace orma {

/// What a move of the view asks to be drawn.
enum class GraphChange : std::uint8_t {
    kNone,
    kCursor,  // the cursor line alone
    kView,    // everything
};

/// Which part of a take the level graph shows, and where in it the play cursor stands: arithmetic
/// alone. Positions and lengths in buffer periods, columns in window pixels from the graph's left
/// edge. `count` is the number of level bytes, which grows during a take.
///
/// Zoom z: 2^z periods share a column for z >= 0, a period takes 2^-z columns for z < 0.
class GraphView {
  public:
    static constexpr int kMinZoom = -4;  // 16 columns for each period

    /// `columns`: the graph's width, at least 1.
    explicit GraphView(int columns) : columns_(columns), width_(columns) {}

    /// [First, Last) is shown: Width periods, or fewer where the take is shorter.
    [[nodiscard]] std::int64_t First() const { return first_; }
    [[nodiscard]] std::int64_t Last() const { return last_; }
    [[nodiscard]] std::int64_t Width() const { return width_; }
    [[nodiscard]] std::int64_t Cursor() const { return cursor_; }  // from First
    [[nodiscard]] std::int64_t Position() const { return first_ + cursor_; }
    [[nodiscard]] int Zoom() const { return zoom_; }

    /// The column of a position; outside the view it is negative or beyond the graph.
    [[nodiscard]] std::int64_t Column(std::int64_t position) const;

    /// The periods that so many columns stand for.
    [[nodiscard]] std::int64_t Periods(std::int64_t columns) const;

    /// Can a line be drawn there? The end of the view belongs to it: the cursor stands behind the
    /// last period when everything was heard.
    [[nodiscard]] bool Shows(std::int64_t position) const {
        return position >= first_ && position <= last_;
    }

    /// The first periods, one a column, the cursor at the beginning.
    void Reset(std::int64_t count);

    /// Playing or recording went on to `position`: at the end of the view it pages. Directly behind
    /// a view that the user has set nothing moves, once.
    GraphChange Follow(std::int64_t position, std::int64_t count);

    /// The cursor goes to a place that somebody chose; the view pages once or jumps there.
    GraphChange SetPosition(std::int64_t position, std::int64_t count);

    /// Brings view and cursor up to date with a position and a count that may have changed unseen.
    /// A cursor that stays may be out of view.
    void Refresh(std::int64_t position, std::int64_t count);

    /// That place in the middle.
    void Centre(std::int64_t position, std::int64_t count);

    /// Moves the view under the cursor: by `moved` of the `whole` length of a scroll thumb, from
    /// the position `base`. Answers the new position.
    std::int64_t ScrollTo(std::int64_t moved, std::int64_t whole, std::int64_t base,
                          std::int64_t count);

    /// One step of zoom, between kMinZoom and the whole take. What stands in the column `under`, or
    /// else the cursor, keeps its place as far as the take's ends allow; so with `under` the cursor
    /// may get out of view. False at the limit.
    bool ZoomIn(std::int64_t count, std::optional<std::int64_t> under = {});
    bool ZoomOut(std::int64_t count, std::optional<std::int64_t> under = {});

  private:
    void SetView(std::int64_t first, std::int64_t count);
    void PutCursor(std::int64_t position, std::int64_t count);
    void SetZoom(int zoom, std::int64_t count, std::optional<std::int64_t> under);

    int columns_;
    int zoom_ = 0;
    std::int64_t width_;
    std::int64_t first_ = 0;
    std::int64_t last_ = 0;
    std::int64_t cursor_ = 0;
    bool follow_ = true;  // the user has set the view: the next update moves nothing
};

/// The mark nearest to `position`, the earlier one of two as near. `marks` ascending, not empty.
[[nodiscard]] std::int64_t NearestMark(std::span<const std::uint32_t> marks, std::int64_t position);

}  // namespace orma
