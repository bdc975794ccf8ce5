#include "ui/controls/rec_graph_win.h"

#include <gtest/gtest.h>

#include "ui/controls/button_bar_win.h"
#include "ui/controls/scrollbar_win.h"
#include "ui/support/screen_rig.h"

namespace orma::test {
namespace {

// The built-in places at scale 1: graph 44, 24, 164 x 80; bar 44, 119, 157 x 10.
constexpr int kX = 44;
constexpr int kY = 24;

class RecGraphWinTest : public ::testing::Test {
  protected:
    explicit RecGraphWinTest(std::size_t periods = 1000) : levels(periods, 60) {
        graph.GraphReset();
    }

    GraphOwner Owner() {
        return {[this] {
                    GraphSource source;
                    source.levels = levels;
                    source.marks = marks;
                    source.cuts = cuts;
                    source.currentCut = currentCut;
                    source.selection = selection;
                    source.selectionFlag = selectionFlag;
                    source.rangeStart = rangeStart;
                    source.rangeEnd = rangeEnd;
                    source.position = position;
                    return source;
                },
                [this](std::int64_t p) {
                    position = static_cast<std::uint32_t>(p);
                    graph.GraphSetPosition(p);
                },
                [this] { return busy; }};
    }

    void Show() {
        rig.PaintPage();
        graph.Paint();
        bar.Paint();
        rig.TakeChanges();
    }

    ScreenRig rig;
    std::vector<std::uint8_t> levels;
    std::vector<std::uint32_t> marks;
    std::vector<RemovedRange> cuts;
    std::int32_t currentCut = -1;
    PeriodRange selection;
    bool selectionFlag = false;
    std::uint32_t rangeStart = 10;
    std::uint32_t rangeEnd = 900;
    std::uint32_t position = 0;
    bool busy = false;
    RecGraphWin graph{rig.scene, Element::EditRecGraph, Owner()};
    ScrollbarWin bar{rig.scene, Element::EditScrollGraph, graph, false};
};

TEST_F(RecGraphWinTest, TheLineIsDrawnFirstThenTheCutsInTheirColoursClippedToTheView) {
    cuts = {{20, 30, 0}, {100, 500, 0}, {600, 700, 0}};
    currentCut = 1;
    Show();
    const SkinColours& colours = rig.skin.Colours();
    ASSERT_EQ(rig.ink.lines.size(), 3U) << "the cut out of view draws nothing";
    EXPECT_EQ(rig.ink.lines[0].colour, colours.waveform);
    EXPECT_EQ(rig.ink.lines[0].points.size(), 164U);
    EXPECT_EQ(rig.ink.lines[0].points[0], (Point{kX, kY + 60}));
    EXPECT_EQ(rig.ink.lines[1].colour, colours.waveformCut);
    EXPECT_EQ(rig.ink.lines[1].points.front(), (Point{kX + 20, kY + 60}));
    EXPECT_EQ(rig.ink.lines[1].points.size(), 11U);
    EXPECT_EQ(rig.ink.lines[2].colour, colours.waveformEditCut);
    EXPECT_EQ(rig.ink.lines[2].points.size(), 64U);

    selection = {90, 150};
    for (const bool flag : {false, true}) {
        selectionFlag = flag;
        Show();
        ASSERT_EQ(rig.ink.lines.size(), 4U) << "over the cuts";
        EXPECT_EQ(rig.ink.lines[3].colour, flag ? colours.waveformEditCut : colours.waveformCut);
        EXPECT_EQ(rig.ink.lines[3].points.front().x, kX + 90);
        EXPECT_EQ(rig.ink.lines[3].points.size(), 61U);
    }
}

TEST_F(RecGraphWinTest, MovingCursorAndLinesAndBackLeavesTheImageAsItWas) {
    marks = {40, 41, 163};
    cuts = {{40, 40, 0}};
    Show();
    const Picture before = rig.image;
    rig.ink.Forget();
    for (const std::int64_t p : {40, 41, 10, 163, 0})
        graph.GraphSetPosition(p);
    for (const std::uint32_t p : {40U, 900U, 163U, 10U})
        graph.GraphMoveLine(RecGraphWin::Line::kRangeStart, p);
    EXPECT_EQ(rig.image.pixels, before.pixels);
    EXPECT_TRUE(rig.ink.lines.empty()) << "nothing is repainted";
    for (const Rect& change : rig.TakeChanges())
        EXPECT_EQ(change.w, 1);

    graph.GraphSetPosition(40);
    EXPECT_NE(rig.image.pixels, before.pixels);
    const Picture moved = rig.image;
    position = 40;
    Show();
    EXPECT_EQ(rig.image.pixels, moved.pixels) << "and it is what a repaint shows";
}

TEST_F(RecGraphWinTest, TheCursorBehindTheLastPeriodIsErasedWithTheView) {
    position = 1000;
    Show();
    EXPECT_FALSE(rig.IsDark(kX + 164, kY + 40));
    rangeEnd = 0;
    position = 0;
    graph.GraphSetPosition(0);
    EXPECT_TRUE(rig.IsDark(kX + 164, kY + 40));
}

TEST_F(RecGraphWinTest, MarksAreCutOffAtTheLeftEdgeAndLeftOutAtTheRight) {
    rangeStart = rangeEnd = 999;
    position = 80;
    const Pixel marked = PlainBitmaps::PixelOfBitmap(511) ^ PlainBitmaps::PixelOfBitmap(494);
    marks = {1, 163};
    Show();
    EXPECT_TRUE(rig.ShowsExactly({kX, kY, 4, 5}, marked));
    marks = {50, 50};
    Show();
    EXPECT_TRUE(rig.ShowsExactly({kX + 48, kY, 5, 5}, marked));
}

TEST_F(RecGraphWinTest, AnEmptyCutIsABandOfTheInvertedPage) {
    cuts = {{30, 30, 0}};
    rangeStart = rangeEnd = 999;
    Show();
    const Pixel inverted = PlainBitmaps::PixelOfBitmap(494) ^ 0xFFFFFFU;
    EXPECT_TRUE(rig.ShowsExactly({kX + 30, kY, 1, 80}, inverted));
}

TEST_F(RecGraphWinTest, APressPicksThePlaceUnderThePointer) {
    struct Case {
        Point at;
        std::uint32_t from;
        std::uint32_t picked;
    };
    marks = {100, 110};
    const Case cases[] = {
        {{kX + 50, kY + 40}, 0, 50},  {{kX + 165, kY + 40}, 0, 164}, {{kX, kY + 40}, 30, 0},
        {{3, kY + 40}, 30, 0},        {{kX + 105, kY + 4}, 0, 100},  {{kX + 106, kY + 4}, 0, 110},
        {{kX + 105, kY + 5}, 0, 105},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.at.x << ", " << c.at.y);
        graph.GraphReset();
        position = c.from;
        Show();
        EXPECT_EQ(rig.PressAt(graph, c.at), &graph);
        EXPECT_EQ(position, c.picked);
    }
    EXPECT_EQ(rig.PressAt(graph, {kX + 166, kY + 40}), nullptr);
    busy = true;
    position = 7;
    rig.PressAt(graph, {kX + 50, kY + 40});
    EXPECT_EQ(position, 7U);
}

TEST_F(RecGraphWinTest, PressingTheLeftEdgeWithTheCursorThereGoesBackAPeriod) {
    position = 500;
    Show();
    ASSERT_EQ(graph.View().Cursor(), 0);
    rig.PressAt(graph, {kX, kY + 40});
    EXPECT_EQ(position, 499U);
}

TEST_F(RecGraphWinTest, WithoutLevelsNothingIsDrawn) {
    levels.clear();
    Show();
    EXPECT_TRUE(rig.ink.lines.empty());
    graph.GraphSetPosition(0);
    EXPECT_EQ(rig.CountOf(PlainBitmaps::PixelOfBitmap(494)), 240 * 270);
}

TEST_F(RecGraphWinTest, TheThumbFollowsTheView) {
    Show();
    EXPECT_TRUE(rig.IsLitExactly({44, 119, 25, 10}));  // 157 * 164 / 1000
    position = 900;
    graph.GraphSetPosition(900);
    EXPECT_TRUE(rig.IsLitExactly({44 + 131, 119, 26, 10}));
    graph.ZoomOut();
    graph.ZoomOut();
    graph.ZoomOut();
    EXPECT_TRUE(rig.IsLitExactly({44, 119, 157, 10}));
}

TEST_F(RecGraphWinTest, TheBarPagesBesideItsThumbAndDragsOnIt) {
    position = 500;
    Show();  // the view begins at 500: thumb 78 to 104
    rig.PressAt(bar, {44 + 77, 120});
    EXPECT_EQ(position, 336U);
    position = 500;
    graph.GraphSetPosition(500);
    rig.PressAt(bar, {44 + 130, 120});
    EXPECT_EQ(position, 664U);
    position = 500;
    graph.GraphCentre(500);
    const int start = 157 * 418 / 1000;
    const int length = 157 * 582 / 1000 - start;
    rig.PressAt(bar, {44 + start + 5, 120});
    EXPECT_EQ(position, 500U);
    rig.DragTo({44 + start + 15, 120});
    EXPECT_EQ(position, 500U + 164U * 10U / static_cast<unsigned>(length));
    EXPECT_EQ(graph.View().Cursor(), 82) << "the view moved under the cursor";
    rig.DragTo({44 + start + 5, 120});
    EXPECT_EQ(position, 500U);
    rig.Release();

    busy = true;
    rig.PressAt(bar, {45, 120});
    EXPECT_EQ(position, 500U);
}

TEST_F(RecGraphWinTest, EachMarkTicksTheBarAndGoesWithIt) {
    marks = {0, 500, 501, 999};
    Show();
    const auto inverted = [&](int x, bool lit) {
        return rig.At(44 + x, 120) == (PlainBitmaps::PixelOfBitmap(lit ? 495 : 494) ^ 0xFFFFFFU);
    };
    EXPECT_TRUE(inverted(0, true));
    EXPECT_TRUE(inverted(78, false)) << "157 * 500 / 1000, and 501 is the same place";
    EXPECT_TRUE(inverted(156, false));
    position = 500;
    graph.GraphSetPosition(500);
    EXPECT_TRUE(inverted(0, false));
    EXPECT_TRUE(inverted(78, true));
    marks = {0};
    graph.GraphRedraw();
    EXPECT_TRUE(rig.IsLitExactly({44 + 78, 119, 26, 10}));
    EXPECT_TRUE(inverted(0, false));
}

TEST_F(RecGraphWinTest, TheWheelZoomsUnderThePointerAndScrollsSideways) {
    position = 80;
    Show();
    graph.OnWheel({kX + 20, kY + 5}, 2, false);
    EXPECT_EQ(graph.View().First(), 15);
    EXPECT_EQ(graph.View().Width(), 41);
    EXPECT_EQ(position, 80U);
    graph.OnWheel({kX + 20, kY + 5}, -2, false);
    EXPECT_EQ(graph.View().First(), 0);
    position = 500;
    graph.GraphSetPosition(500);
    graph.OnWheel({kX, kY}, 2, true);
    EXPECT_EQ(position, 541U) << "two eighths of 164";
    EXPECT_EQ(graph.View().First(), 541);
    bar.OnWheel({45, 120}, 1, false);
    EXPECT_EQ(position, 521U);
    busy = true;
    graph.OnWheel({kX, kY}, 2, true);
    EXPECT_EQ(position, 521U);
    busy = false;
    graph.OnWheel({kX, kY}, -9, false);
    graph.OnWheel({kX, kY}, 1, true);
    EXPECT_EQ(position, 521U) << "all of it is in view";
}

TEST(ScrollThumb, IsNeverUnderFourPixelsNorBeyondTheBar) {
    EXPECT_EQ(ThumbOf(157, 0, 164, 0), ScrollThumb{});
    EXPECT_EQ(ThumbOf(157, 0, 100, 100), (ScrollThumb{0, 157}));
    EXPECT_EQ(ThumbOf(100, 1000, 2000, 50000), (ScrollThumb{2, 4}));
    EXPECT_EQ(ThumbOf(100, 49000, 50000, 50000), (ScrollThumb{96, 4}));
}

TEST(ButtonBarWin, EachThirdOfTheBarIsAButton) {
    ScreenRig rig;
    int undo = 0;
    int mark = 0;
    int deleteCut = 0;
    ButtonBarWin bar(rig.scene, Element::EditButtonBar,
                     {[&] { ++undo; }, [&] { ++mark; }, [&] { ++deleteCut; }});
    bar.Paint();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(rig.ExtentOf(PlainBitmaps::PixelOfBitmap(512 + i)),
                  (Rect{213, 20 + 9 + 28 * i, 10, 10}));
    rig.PressAt(bar, {213, 47});
    rig.PressAt(bar, {239, 48});
    rig.PressAt(bar, {220, 103});
    EXPECT_EQ(rig.PressAt(bar, {220, 104}), nullptr);
    EXPECT_EQ(rig.PressAt(bar, {212, 60}), nullptr);
    EXPECT_EQ((std::vector<int>{undo, mark, deleteCut}), (std::vector<int>{1, 1, 1}));
}

}  // namespace
}  // namespace orma::test
