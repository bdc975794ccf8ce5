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
    EXPECT_EQ(FollowTo(whole, 100, 100), GraphChange::kCursor) << "all of it is in view";
    EXPECT_FALSE(whole.ZoomOut(100));
    EXPECT_TRUE(whole.ZoomIn(100));
    ExpectView(whole, 18, 100, 82);
}

TEST(GraphView, AChosenPositionMovesTheCursorPagesOnceOrJumps) {
    struct Case {
        std::int64_t position;
        GraphChange change;
        std::int64_t first, last, cursor;
    };
    // From the view [300, 464) of 1000 periods, the cursor at 350.
    const Case cases[] = {
        {350, GraphChange::kNone, 300, 464, 50},    {463, GraphChange::kCursor, 300, 464, 163},
        {464, GraphChange::kView, 464, 628, 0},     {627, GraphChange::kView, 464, 628, 163},
        {628, GraphChange::kView, 628, 792, 0},     {900, GraphChange::kView, 836, 1000, 64},
        {1000, GraphChange::kView, 836, 1000, 164}, {5000, GraphChange::kView, 836, 1000, 164},
        {299, GraphChange::kView, 136, 300, 163},   {136, GraphChange::kView, 136, 300, 0},
        {135, GraphChange::kView, 135, 299, 0},     {-7, GraphChange::kView, 0, 164, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.position);
        GraphView view = ViewOf(1000);
        view.Centre(382, 1000);
        static_cast<void>(view.SetPosition(350, 1000));
        EXPECT_EQ(view.SetPosition(c.position, 1000), c.change);
        ExpectView(view, c.first, c.last, c.cursor);
    }
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

}  // namespace
}  // namespace orma
