#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "audio/files/level_sheet.h"
#include "ui/controls/graph_view.h"
#include "ui/controls/win.h"

namespace orma {

/// What the graph shows, borrowed for the length of one operation. Positions in buffer periods.
struct GraphSource {
    std::span<const std::uint8_t> levels;
    std::span<const std::uint32_t> marks;  // ascending
    std::span<const RemovedRange> cuts;
    std::int32_t currentCut = -1;
    PeriodRange selection;       // of the editor; empty: none is shown
    bool selectionFlag = false;  // it is being edited
    std::uint32_t rangeStart = 0;
    std::uint32_t rangeEnd = 0;
    std::uint32_t position = 0;  // of playing or recording
};

/// What the graph asks of whoever owns it.
struct GraphOwner {
    std::function<GraphSource()> source;

    /// The user picked a place. The owner moves the transport there and calls GraphSetPosition.
    std::function<void(std::int64_t position)> setPosition;

    /// The audio engine is busy: the user's presses do nothing.
    std::function<bool()> busy;

    /// Paints what else of the screen lies beneath the graph, each time that the page was restored
    /// there for a repaint of its own.
    std::function<void()> paintBeneath = [] {};

    /// The user drags the view along from now on, or has let it go.
    std::function<void(bool on)> dragging = [](bool) {};
};

/// The editor's level graph: the levels as a line, removed stretches and the selection in colours
/// of their own, marks, the play cursor and the edges of the range. Cursor, range lines and marks
/// are combined with the image by exclusive or, so that the first two move without a repaint.
///
/// All operations but GraphReset draw, and belong to a screen that is entered. UI thread.
class RecGraphWin : public Win {
  public:
    enum class Line : std::uint8_t { kRangeStart = 0, kRangeEnd = 1 };

    RecGraphWin(const Scene& scene, Element element, GraphOwner owner);

    /// Another recording: its beginning, one period a column. Draws nothing.
    void GraphReset();

    /// Playing or recording went on: the cursor follows, the view pages at its end; but not while
    /// the view is dragged.
    void GraphFollow();

    /// The position is `position` now, by somebody's choice; the source tells the same already.
    void GraphSetPosition(std::int64_t position);
    void GraphCentre(std::int64_t position);

    /// Moves the view by `moved` of `whole` pixels of a scroll thumb, from the position `base`, and
    /// sets the position to where the cursor comes to stand.
    void GraphScrollTo(std::int64_t moved, std::int64_t whole, std::int64_t base);

    /// Between the two calls the view belongs to who drags it.
    void DragView(bool on);

    /// Moves an edge of the range as it is drawn; the source is to tell the same from now on.
    void GraphMoveLine(Line which, std::uint32_t position);

    void ZoomIn();
    void ZoomOut();

    /// Marks, cuts or levels have changed.
    void GraphRedraw();

    /// Hears of every change of the view, after it was drawn.
    void SetViewListener(std::function<void()> listener) { viewChanged_ = std::move(listener); }

    [[nodiscard]] const GraphView& View() const { return view_; }
    [[nodiscard]] std::int64_t Count() const;  // level bytes
    [[nodiscard]] std::span<const std::uint32_t> Marks() const { return owner_.source().marks; }

    /// The user picked a place, here or on the scroll bar; it is brought into the recording.
    void PickPosition(std::int64_t position);
    [[nodiscard]] bool IsBusy() const { return owner_.busy(); }

    void Paint() override;

    /// Everything to the left of its right edge, and a little beyond.
    [[nodiscard]] Win* HitTest(Point at) override;

    /// Picks the place under the pointer; at the upper edge, where marks stand, the nearest mark.
    void Press() override;

    /// Moves the position by columns, at least a period each.
    void StepBy(int steps) override;

    /// Zooms under the pointer; sideways it scrolls by an eighth of the view, the position with it.
    void OnWheel(Point at, int steps, bool sideways) override;

    /// The position's share of the recording: "42%".
    [[nodiscard]] Text Value() const override;

  private:
    static constexpr int kMarkHeight = 5;  // design pixels
    static constexpr int kReach = 2;       // window pixels beyond the right edge

    /// A line that stands on the image, by its column.
    struct DrawnLine {
        int bitmap;
        std::optional<int> column;
    };

    void Apply(GraphChange change);
    void DrawLevels(const GraphSource& source);
    void DrawStretch(const PeriodRange& range, std::size_t columns, Colour colour);
    void DrawEmptyCut(std::uint32_t position);
    void DrawMarks(std::span<const std::uint32_t> marks);
    void DrawLine(DrawnLine& line, std::int64_t position);
    void EraseLine(DrawnLine& line);
    void MoveLine(DrawnLine& line, std::int64_t position);

    GraphOwner owner_;
    GraphView view_;
    std::vector<Point> points_;  // one a column
    Picture white_;              // a column that inverts
    DrawnLine cursor_{500, {}};
    DrawnLine range_[2] = {{501, {}}, {502, {}}};
    std::function<void()> viewChanged_ = [] {};
    bool dragged_ = false;
};

}  // namespace orma
