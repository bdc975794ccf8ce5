#include "ui/controls/graph_view.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

constexpr int kColumns = 164;

GraphView ViewOf(std::int64_t count) {
    GraphView view(kColumns);
    view.Reset(count);
    return view;
}

/// Advances to `to` period by period, as a player does.
GraphChange FollowTo(GraphView& view, std::int64_t to, std::int64_t count) {
    GraphChange last = GraphChange::kNone;
    for (std::int64_t p = view.Position() + 1; p <= to; ++p)
        last = view.Follow(p, count);
    return last;
}

void ExpectView(const GraphView& view, std::int64_t first, std::int64_t last, std::int64_t cursor) {
    EXPECT_EQ(view.First(), first);
    EXPECT_EQ(view.Last(), last);
    EXPECT_EQ(view.Cursor(), cursor);
}

TEST(GraphView, FollowingPagesAtTheEndOfTheViewAndStopsAtTheEndOfTheTake) {
    GraphView view = ViewOf(400);
    EXPECT_EQ(view.Follow(1, 400), GraphChange::kNone) << "the view has just been set";
    EXPECT_EQ(FollowTo(view, 163, 400), GraphChange::kCursor);
    ExpectView(view, 0, 164, 163);
    EXPECT_EQ(view.Follow(164, 400), GraphChange::kView);
    ExpectView(view, 164, 328, 0);
    FollowTo(view, 327, 400);
    EXPECT_EQ(view.Follow(328, 400), GraphChange::kView);
    ExpectView(view, 236, 400, 92);
    EXPECT_EQ(FollowTo(view, 400, 400), GraphChange::kCursor);
    ExpectView(view, 236, 400, 164);
    EXPECT_EQ(view.Follow(400, 400), GraphChange::kNone);

    GraphView whole = ViewOf(100);
    EXPECT_EQ(FollowTo(whole, 100, 100), GraphChange::kCursor);
    ExpectView(whole, 0, 100, 100);
}

TEST(GraphView, FollowingAGrowingTakeKeepsItsEndInView) {
    GraphView view = ViewOf(0);
    for (std::int64_t count = 1; count <= 1000; ++count) {
        const std::int64_t before = view.Position();
        if (view.Follow(count, count) == GraphChange::kNone) {
            EXPECT_EQ(before, 0);
            continue;
        }
        ASSERT_EQ(view.Position(), count);
        ASSERT_EQ(view.Last(), count);
        ASSERT_TRUE(view.Shows(count));
    }
}

TEST(GraphView, AChosenPositionMovesTheCursorPagesOnceOrJumps) {
    // From the view [300, 464) of 1000 periods, the cursor at 350.
    const struct {
        std::int64_t position;
        GraphChange change;
        std::int64_t first, last, cursor;
    } cases[] = {
        {350, GraphChange::kNone, 300, 464, 50},    {463, GraphChange::kCursor, 300, 464, 163},
        {464, GraphChange::kView, 464, 628, 0},     {627, GraphChange::kView, 464, 628, 163},
        {628, GraphChange::kView, 628, 792, 0},     {900, GraphChange::kView, 836, 1000, 64},
        {1000, GraphChange::kView, 836, 1000, 164}, {5000, GraphChange::kView, 836, 1000, 164},
        {299, GraphChange::kView, 136, 300, 163},   {136, GraphChange::kView, 136, 300, 0},
        {135, GraphChange::kView, 135, 299, 0},     {-7, GraphChange::kView, 0, 164, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.position);
        GraphView view = ViewOf(1000);
        view.Centre(382, 1000);
        static_cast<void>(view.SetPosition(350, 1000));
        EXPECT_EQ(view.SetPosition(c.position, 1000), c.change);
        ExpectView(view, c.first, c.last, c.cursor);
    }
}

TEST(GraphView, CentringStopsAtBothEnds) {
    GraphView view = ViewOf(1000);
    view.Centre(500, 1000);
    ExpectView(view, 418, 582, 82);
    view.Centre(10, 1000);
    ExpectView(view, 0, 164, 10);
    view.Centre(990, 1000);
    ExpectView(view, 836, 1000, 154);
    EXPECT_EQ(view.SetPosition(1000, 1000), GraphChange::kCursor) << "the end is in the last view";
    ExpectView(view, 836, 1000, 164);
}

TEST(GraphView, ScrollingMovesTheViewUnderTheCursorUntilAnEndHoldsIt) {
    GraphView view = ViewOf(1640);
    view.Centre(500, 1640);  // the thumb of a bar of 157 pixels is 15 or 16 long
    EXPECT_EQ(view.ScrollTo(3, 16, 500, 1640), 530);
    ExpectView(view, 448, 612, 82);
    EXPECT_EQ(view.ScrollTo(-3, 16, 500, 1640), 470);
    ExpectView(view, 388, 552, 82);
    EXPECT_EQ(view.ScrollTo(500, 16, 500, 1640), 1639);
    ExpectView(view, 1476, 1640, 163);
    view.Centre(500, 1640);
    EXPECT_EQ(view.ScrollTo(-45, 16, 500, 1640), 39);
    ExpectView(view, 0, 164, 39);
}

TEST(GraphView, ZoomingKeepsTheCursorsColumn) {
    constexpr std::int64_t kCount = 720000;
    GraphView view = ViewOf(kCount);
    view.Centre(300000, kCount);
    const std::int64_t column = view.Column(view.Position());
    int zoom = 0;
    while (view.ZoomOut(kCount) && view.Width() < kCount / 4) {
        EXPECT_EQ(view.Zoom(), ++zoom);
        EXPECT_EQ(view.Position(), 300000);
        EXPECT_EQ(view.Column(300000), column);
        EXPECT_EQ(view.Width(), std::int64_t{kColumns} << zoom);
    }
    while (view.ZoomOut(kCount)) {
    }
    EXPECT_EQ(view.First(), 0);
    EXPECT_EQ(view.Last(), kCount) << "the whole take";
    EXPECT_LT(view.Width() / 2, kCount) << "and not further";
    while (view.ZoomIn(kCount)) {
    }
    EXPECT_EQ(view.Zoom(), GraphView::kMinZoom);
    EXPECT_EQ(view.Width(), kColumns / 16);
    EXPECT_EQ(view.Position(), 300000);
    EXPECT_TRUE(view.Shows(300000));
    EXPECT_EQ(view.Column(view.First() + 3), 48);
    EXPECT_EQ(view.Periods(47), 2);
}

TEST(GraphView, ZoomingUnderAColumnKeepsWhatStandsThereAndLeavesTheCursor) {
    GraphView view = ViewOf(1000);
    view.Centre(500, 1000);  // [418, 582)
    EXPECT_TRUE(view.ZoomIn(1000, 20));
    ExpectView(view, 428, 510, 72);  // 438 in column 20, two columns a period
    EXPECT_TRUE(view.ZoomIn(1000, 20));
    ExpectView(view, 433, 474, 67);
    EXPECT_FALSE(view.Shows(500));
    view.Refresh(500, 1000);
    ExpectView(view, 433, 474, 67);
    view.Refresh(501, 1000);  // moved: the view follows
    ExpectView(view, 474, 515, 27);
    EXPECT_TRUE(view.ZoomOut(1000, 164));
    ExpectView(view, 433, 515, 68);
    EXPECT_TRUE(view.ZoomOut(1000, -50)) << "left of the graph is its first column";
    ExpectView(view, 433, 597, 68);
    EXPECT_EQ(view.Follow(800, 1000), GraphChange::kNone) << "the user has just set the view";
    EXPECT_EQ(view.Follow(800, 1000), GraphChange::kView);
}

TEST(GraphView, AShortTakeIsNotZoomedOutAndItsEndStaysWithTheCursor) {
    GraphView view = ViewOf(100);
    EXPECT_FALSE(view.ZoomOut(100));
    static_cast<void>(view.SetPosition(100, 100));
    EXPECT_TRUE(view.ZoomIn(100));
    ExpectView(view, 18, 100, 82);
}

TEST(GraphView, WhatChangedUnseenIsBroughtUpToDate) {
    GraphView view = ViewOf(1000);
    view.Centre(950, 1000);
    view.Refresh(40, 50);  // a shorter recording took its place
    ExpectView(view, 0, 50, 40);
    view.Refresh(140, 150);
    ExpectView(view, 0, 150, 140);
}

}  // namespace
}  // namespace orma
