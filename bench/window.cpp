// bench_window: what the screens cost in the doubled window, painted into memory and shown by the
// toolkit without a display. "meter" is 1000 times a meter that was dark and rises over all its
// height; "graph.Z" 100 times the graph of a recording of ten hours at zoom Z (2^Z periods a
// column), at the place of it that takes longest.

#include <QApplication>

#include "measure.h"
#include "ui/controls/rec_graph_win.h"
#include "ui/controls/vu_win.h"
#include "window/page_widget.h"
#include "window/qt_ink.h"
#include "window/resource_bitmaps.h"

namespace orma::bench {
namespace {

constexpr Size kClient{480, 540};
constexpr std::uint32_t kPeriods = 10 * 3600 * 20;
constexpr Pages kPages{494, 495};

/// The page with the image that the controls paint on, and nobody at the controls.
class Page : public PageClient {
  public:
    Page() {
        widget_.show();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] const Scene& TheScene() const { return scene_; }
    void Show() {
        frames_ = 0;
        widget_.Flush();
        Require(frames_ == 1, "nothing was shown");
    }

    const Picture& Image() override { return image_; }
    std::span<const std::unique_ptr<Win>> Controls() override { return {}; }
    Win* Focused() override { return nullptr; }
    void BeforePaint() override { ++frames_; }
    void LeftDown(Point) override {}
    void LeftUp(Point) override {}
    void Moved(Point) override {}
    void Wheel(Point, int, bool) override {}
    void RightDown(Point) override {}
    void RightUp(Point) override {}
    void KeyDown(Key, bool) override {}
    void KeyUp(Key) override {}

  private:
    int frames_ = 0;
    PosixStorage storage_;
    ResourceBitmaps bitmaps_;
    QtInk ink_;
    Picture image_{kClient.width, kClient.height,
                   std::vector<Pixel>(std::size_t{kClient.width} * kClient.height)};
    PageWidget widget_{*this, kClient};
    Skin skin_{storage_, bitmaps_, u"/", kClient, false};
    Canvas canvas_{image_, ink_, [this](const Rect& changed) { widget_.Changed(changed); }};
    Pointer pointer_;
    Scene scene_{skin_, canvas_, pointer_, kPages};
};

void MeasureMeter() {
    Page page;
    VuWin meter(page.TheScene(), Element::VU, 2, false);
    meter.VuInit();
    page.Show();
    Compare("meter", {{"rise", [&] {
                           for (int i = 0; i < 1000; ++i) {
                               meter.VuInit();
                               meter.VuUpdate(0);
                               page.Show();
                           }
                       }}});
    Require(meter.BarOffset() == 0, "the meter did not rise");
}

/// Ten hours of syllables with a mark a minute, a hundred cuts and a selection over the middle.
struct Recording {
    Recording() {
        levels.resize(kPeriods);
        std::uint32_t noise = 1;
        for (std::uint32_t i = 0; i < kPeriods; ++i) {
            noise = noise * 1664525 + 1013904223;
            levels[i] = static_cast<std::uint8_t>(i % 23 < 17 ? 10 + (noise >> 27) : 79);
        }
        for (std::uint32_t at = 1200; at < kPeriods; at += 1200)
            marks.push_back(at);
        for (std::uint32_t i = 0; i < 100; ++i)
            cuts.push_back({i * 7200 + 100, i * 7200 + 1300, 0});
    }

    std::vector<std::uint8_t> levels;
    std::vector<std::uint32_t> marks;
    std::vector<RemovedRange> cuts;
    std::uint32_t position = 0;
};

void MeasureGraph() {
    Page page;
    Recording recording;
    const auto source = [&] {
        return GraphSource{.levels = recording.levels,
                           .marks = recording.marks,
                           .cuts = recording.cuts,
                           .currentCut = 50,
                           .selection = {kPeriods / 3, kPeriods / 2},
                           .rangeStart = kPeriods / 3,
                           .rangeEnd = kPeriods / 2,
                           .position = recording.position};
    };
    RecGraphWin graph(
        page.TheScene(), Element::EditRecGraph,
        {.source = source, .setPosition = [](std::int64_t) {}, .busy = [] { return false; }});
    graph.GraphReset();
    for (int zoom = graph.View().Zoom() - 1; zoom != graph.View().Zoom();) {
        zoom = graph.View().Zoom();
        graph.ZoomIn();
    }
    for (int zoom = graph.View().Zoom() - 1; zoom != graph.View().Zoom(); graph.ZoomOut()) {
        zoom = graph.View().Zoom();
        std::vector<Contender> places;
        for (const std::uint32_t place : {0U, 7200U, kPeriods / 3, kPeriods / 2, kPeriods - 400})
            places.push_back({"", [&, place] {
                                  recording.position = place;
                                  graph.GraphCentre(place);
                                  for (int i = 0; i < 100; ++i) {
                                      graph.GraphRedraw();
                                      page.Show();
                                  }
                              }});
        Cost worst;
        for (const Cost& cost : MedianCosts(places, 7))
            if (cost.cpu > worst.cpu) worst = cost;
        std::printf("graph.%d %.6f %.6f\n", zoom, worst.cpu, worst.wall);
    }
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, words);
    orma::bench::MeasureMeter();
    orma::bench::MeasureGraph();
}
