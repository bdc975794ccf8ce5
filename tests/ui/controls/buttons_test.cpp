#include <gtest/gtest.h>

#include "ui/controls/prg_bar_win.h"
#include "ui/controls/push_button_win.h"
#include "ui/support/screen_rig.h"

namespace orma {
namespace {

TEST(PushButtonWinTest, IsLitWhileItIsHeldAndBeforeItActs) {
    test::ScreenRig rig;
    const Rect place{31, 164, 37, 20};
    int litWhenActing = 0;
    PushButtonWin mark(rig.scene, Element::BackMark,
                       [&] { litWhenActing += rig.IsLitExactly(place); });
    rig.PressAt(mark, {40, 170});
    EXPECT_EQ(litWhenActing, 1);
    EXPECT_TRUE(rig.IsLitExactly(place));
    rig.DragTo({200, 20});
    rig.Release();
    EXPECT_TRUE(rig.IsLitExactly({}));
    EXPECT_EQ(litWhenActing, 1);
}

TEST(PrgBarWinTest, FillsFromTheLeftAndPaintsOnlyTheDifference) {
    test::ScreenRig rig({.pages = {492, 493}});
    PrgBarWin bar(rig.scene, Element::ProgressBar);  // 20, 108, 195 x 14
    bar.SetProgress(0, 0);
    bar.SetProgress(3'000'000'000U, 4'000'000'000U);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{20, 108, 146, 14}}));
    EXPECT_EQ(ToUtf8(bar.Value()), "75%");
    bar.SetProgress(9, 5);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{166, 108, 49, 14}}));
    bar.SetProgress(1, 2);  // the next piece of work
    EXPECT_TRUE(rig.IsLitExactly({20, 108, 97, 14}));
}

}  // namespace
}  // namespace orma
