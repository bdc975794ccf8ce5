#pragma once

#include <optional>
#include <vector>

#include "ui/controls/rec_graph_win.h"

namespace orma {

/// The part of a scroll bar that stands for the view; pixels from the bar's left edge.
struct ScrollThumb {
    int start = 0;
    int length = 0;  // 0: there is none

    friend bool operator==(const ScrollThumb&, const ScrollThumb&) = default;
};

/// The thumb of a bar `width` pixels long for the view [first, last) of `count` periods: never
/// under 4 pixels, never beyond the bar; none without periods.
[[nodiscard]] ScrollThumb ThumbOf(int width, std::int64_t first, std::int64_t last,
                                  std::int64_t count);

/// The bar under the level graph. Beside the thumb a press pages, on it the thumb can be dragged.
/// Each mark of the recording has a tick on it, which inverts what lies beneath. Follows the graph
/// by itself while its screen is entered.
class ScrollbarWin : public Win {
  public:
    /// `graph` outlives the bar, which becomes its view listener. `redrawWhole`: a changed view
    /// repaints the bar over its whole length, not only the old thumb and the new one.
    ScrollbarWin(const Scene& scene, Element element, RecGraphWin& graph, bool redrawWhole);

    void Paint() override;
    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override;
    void Release() override;
    void Drag() override;

    /// By views, to the left or to the right.
    void StepBy(int steps) override;

    /// Scrolls as over the graph: away from the user goes back.
    void OnWheel(Point at, int steps, bool sideways) override;

    /// Where the view begins, as a share of the recording: "42%".
    [[nodiscard]] Text Value() const override;

  private:
    /// What a drag began with.
    struct DragStart {
        std::int64_t position;
        int thumbLength;
    };

    void ShowView();
    [[nodiscard]] ScrollThumb Thumb() const;
    [[nodiscard]] std::vector<int> Ticks() const;
    [[nodiscard]] Rect RectOf(const ScrollThumb& thumb) const;

    RecGraphWin& graph_;
    bool redrawWhole_;
    ScrollThumb drawn_;
    std::vector<int> drawnTicks_;  // pixels from the bar's left edge, ascending
    Picture tick_;
    std::optional<DragStart> drag_;
};

}  // namespace orma
