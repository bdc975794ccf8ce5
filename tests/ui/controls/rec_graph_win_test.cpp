#include "ui/controls/rec_graph_win.h"

#include <string>

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
    RecGraphWinTest() {
        source.rangeStart = 10;
        source.rangeEnd = 900;
        graph.GraphReset();
    }

    GraphOwner Owner() {
        return {[this] {
                    source.levels = levels;
                    source.marks = marks;
                    source.cuts = cuts;
                    source.position = position;
                    return source;
                },
                [this](std::int64_t p) { GoTo(static_cast<std::uint32_t>(p)); },
                [this] { return busy; }};
    }

    void GoTo(std::uint32_t p) {
        position = p;
        graph.GraphSetPosition(p);
    }

    void Show() {
        rig.PaintPage();
        graph.Paint();
        bar.Paint();
        rig.TakeChanges();
    }

    ScreenRig rig;
    GraphSource source;
    std::vector<std::uint8_t> levels = std::vector<std::uint8_t>(1000, 60);
    std::vector<std::uint32_t> marks;
    std::vector<RemovedRange> cuts;
    std::uint32_t position = 0;
    bool busy = false;
    RecGraphWin graph{rig.scene, Element::EditRecGraph, Owner()};
    ScrollbarWin bar{rig.scene, Element::EditScrollGraph, graph, false};
};

TEST_F(RecGraphWinTest, TheLineIsDrawnFirstThenCutsAndSelectionClippedToTheView) {
    cuts = {{20, 30, 0}, {100, 500, 0}, {600, 700, 0}};
    source.currentCut = 1;
    source.selection = {90, 150};
    for (const bool flag : {false, true}) {
        source.selectionFlag = flag;
        Show();
        const SkinColours& colours = rig.skin.Colours();
        const struct {
            int column;
            std::size_t points;
            Colour colour;
        } lines[] = {{0, 164, colours.waveform},
                     {20, 11, colours.waveformCut},
                     {100, 64, colours.waveformEditCut},
                     {90, 61, flag ? colours.waveformEditCut : colours.waveformCut}};
        ASSERT_EQ(rig.ink.lines.size(), std::size(lines)) << "the cut out of view draws nothing";
        for (std::size_t i = 0; i < std::size(lines); ++i) {
            EXPECT_EQ(rig.ink.lines[i].points.front(), (Point{kX + lines[i].column, kY + 60}));
            EXPECT_EQ(rig.ink.lines[i].points.size(), lines[i].points) << i;
            EXPECT_EQ(rig.ink.lines[i].colour, lines[i].colour) << i;
        }
    }
    source.selection = {};
    Show();
    EXPECT_EQ(rig.ink.lines.size(), 3U) << "nothing is selected";
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
    source.rangeEnd = 0;
    GoTo(0);
    EXPECT_TRUE(rig.IsDark(kX + 164, kY + 40));
}

TEST_F(RecGraphWinTest, MarksAreCutOffAtTheLeftEdgeAndLeftOutAtTheRightAndEmptyCutsAreBands) {
    source.rangeStart = source.rangeEnd = 999;
    position = 80;
    const Pixel marked = PlainBitmaps::PixelOfBitmap(511) ^ PlainBitmaps::PixelOfBitmap(494);
    marks = {1, 163};
    Show();
    EXPECT_TRUE(rig.ShowsExactly({kX, kY, 4, 5}, marked));
    marks = {50, 50};
    Show();
    EXPECT_TRUE(rig.ShowsExactly({kX + 48, kY, 5, 5}, marked));
    cuts = {{30, 30, 0}};
    Show();
    const Pixel inverted = PlainBitmaps::PixelOfBitmap(494) ^ 0xFFFFFFU;
    EXPECT_TRUE(rig.ShowsExactly({kX + 30, kY, 1, 80}, inverted));
}

TEST_F(RecGraphWinTest, APressPicksThePlaceUnderThePointer) {
    marks = {100, 110};
    const struct {
        int x, y;
        std::uint32_t from, picked;
    } cases[] = {
        {50, 40, 0, 50},  {165, 40, 0, 164}, {0, 40, 30, 0},   {3 - kX, 40, 30, 0},
        {105, 4, 0, 100}, {106, 4, 0, 110},  {105, 5, 0, 105}, {0, 40, 500, 499},
    };
    for (const auto& [x, y, from, picked] : cases) {
        graph.GraphReset();
        position = from;
        Show();
        EXPECT_EQ(rig.PressAt(graph, {kX + x, kY + y}), &graph);
        EXPECT_EQ(position, picked) << x << ", " << y;
    }
    EXPECT_EQ(rig.PressAt(graph, {kX + 166, kY + 40}), nullptr);
    busy = true;
    position = 7;
    rig.PressAt(graph, {kX + 50, kY + 40});
    EXPECT_EQ(position, 7U);
}

TEST_F(RecGraphWinTest, WithoutLevelsNothingIsDrawn) {
    levels.clear();
    Show();
    EXPECT_TRUE(rig.ink.lines.empty());
    graph.GraphSetPosition(0);
    EXPECT_TRUE(rig.ShowsExactly(rig.image.Bounds(), PlainBitmaps::PixelOfBitmap(494)));
}

TEST_F(RecGraphWinTest, TheThumbFollowsTheViewPagesAndDragsIt) {
    Show();
    EXPECT_TRUE(rig.IsLitExactly({44, 119, 25, 10}));  // 157 * 164 / 1000
    GoTo(500);                                         // where the view begins: thumb 78 to 104
    EXPECT_TRUE(rig.IsLitExactly({44 + 78, 119, 26, 10}));
    rig.PressAt(bar, {44 + 77, 120});
    EXPECT_EQ(position, 336U);
    GoTo(500);
    rig.PressAt(bar, {44 + 130, 120});
    EXPECT_EQ(position, 664U);
    position = 500;
    graph.GraphCentre(500);  // thumb 65 to 91
    rig.PressAt(bar, {44 + 70, 120});
    EXPECT_EQ(position, 500U);
    rig.DragTo({44 + 80, 120});
    EXPECT_EQ(position, 500U + 164 * 10 / 26);
    EXPECT_EQ(graph.View().Cursor(), 82) << "the view moved under the cursor";
    rig.DragTo({44 + 70, 120});
    EXPECT_EQ(position, 500U);
    rig.Release();

    busy = true;
    rig.PressAt(bar, {45, 120});
    EXPECT_EQ(position, 500U);
    for (int i = 0; i < 3; ++i)
        graph.ZoomOut();
    EXPECT_TRUE(rig.IsLitExactly({44, 119, 157, 10}));
}

TEST_F(RecGraphWinTest, EachMarkTicksTheBarAndGoesWithIt) {
    marks = {0, 500, 501, 999};
    const auto ticks = [&](int bitmap) {
        std::vector<int> places;
        for (int x = 0; x < 157; ++x)
            if (rig.image.At(44 + x, 120) == (PlainBitmaps::PixelOfBitmap(bitmap) ^ 0xFFFFFFU))
                places.push_back(x);
        return places;
    };
    Show();
    EXPECT_EQ(ticks(495), std::vector<int>{0});
    EXPECT_EQ(ticks(494), (std::vector<int>{78, 156})) << "500 and 501 are the same place";
    GoTo(500);
    EXPECT_EQ(ticks(494), (std::vector<int>{0, 156}));
    EXPECT_EQ(ticks(495), std::vector<int>{78});
    marks = {0};
    graph.GraphRedraw();
    EXPECT_TRUE(rig.IsLitExactly({44 + 78, 119, 26, 10}));
    EXPECT_EQ(ticks(494), std::vector<int>{0});
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
    GoTo(500);
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

TEST(ButtonBarWin, EachThirdOfTheBarIsAButtonAndFaintWhileItRests) {
    ScreenRig rig;
    std::string pressed;
    bool isEnabled = true;
    const auto button = [&](char letter) {
        return ButtonBarWin::Button{[&pressed, letter] { pressed += letter; },
                                    [&isEnabled, letter] { return letter != 'm' || isEnabled; }};
    };
    ButtonBarWin bar(rig.scene, Element::EditButtonBar, {button('u'), button('m'), button('d')});
    bar.Paint();
    const auto shows = [&](int i) {
        return rig.ShowsExactly({213, 29 + 28 * i, 10, 10}, PlainBitmaps::PixelOfBitmap(512 + i));
    };
    for (const Point at : {Point{213, 47}, {239, 48}, {220, 103}})
        rig.PressAt(bar, at);
    EXPECT_EQ(rig.PressAt(bar, {220, 104}), nullptr);
    EXPECT_EQ(rig.PressAt(bar, {212, 60}), nullptr);
    ASSERT_EQ(bar.Pieces().size(), 3U);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(shows(i));
        Win& piece = *bar.Pieces()[static_cast<std::size_t>(i)];
        EXPECT_EQ(piece.Bounds(), (Rect{213, 20 + 28 * i, 10, 28}));
        piece.Press();
    }
    EXPECT_EQ(pressed, "umdumd");

    rig.TakeChanges();
    bar.Update();
    EXPECT_TRUE(rig.TakeChanges().empty());
    isEnabled = false;
    bar.Update();
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{213, 57, 10, 10}}));
    EXPECT_TRUE(rig.ShowsExactly({}, PlainBitmaps::PixelOfBitmap(513)));
    EXPECT_TRUE(shows(2));
    isEnabled = true;
    bar.Update();
    EXPECT_TRUE(shows(1));
}

}  // namespace
}  // namespace orma::test
