#include <gtest/gtest.h>

#include "ui/controls/button_win.h"
#include "ui/controls/prg_bar_win.h"
#include "ui/controls/push_button_win.h"
#include "ui/controls/rec_status_win.h"
#include "ui/controls/toggle_button_win.h"
#include "ui/support/screen_rig.h"

namespace orma {
namespace {

using test::PlainBitmaps;

TEST(ToggleButtonWinTest, LooksAsItsHandlerDecides) {
    test::ScreenRig rig;
    ToggleButtonWin* button = nullptr;
    bool refuses = true;
    std::vector<bool> asked;
    ToggleButtonWin record(rig.scene, Element::Record, [&](bool lit) {
        asked.push_back(lit);
        if (!refuses) button->SetState(lit);
    });
    button = &record;

    rig.PressAt(record, {160, 200});
    EXPECT_FALSE(record.IsOn());
    EXPECT_TRUE(rig.TakeChanges().empty());
    refuses = false;
    rig.PressAt(record, {160, 200});
    EXPECT_TRUE(record.IsOn());
    EXPECT_TRUE(rig.IsLitExactly({156, 191, 65, 65}));
    rig.PaintPage();
    record.Paint();
    EXPECT_TRUE(rig.IsLitExactly({156, 191, 65, 65}));
    rig.TakeChanges();
    record.SetState(true);
    EXPECT_TRUE(rig.TakeChanges().empty());
    rig.PressAt(record, {160, 200});
    EXPECT_TRUE(rig.IsLitExactly({}));
    EXPECT_EQ(asked, (std::vector<bool>{true, true, false}));
}

TEST(ToggleButtonWinTest, TakesThePointerUpToItsLastPixel) {
    test::ScreenRig rig({.client = {480, 540}});
    ToggleButtonWin stop(rig.scene, Element::Stop, [](bool) {});  // 18, 191, 65 x 65, twice
    EXPECT_EQ(stop.HitTest({36, 382}), &stop);
    EXPECT_EQ(stop.HitTest({165, 511}), &stop);
    EXPECT_EQ(stop.HitTest({35, 382}), nullptr);
    EXPECT_EQ(stop.HitTest({166, 511}), nullptr);
    EXPECT_EQ(stop.HitTest({165, 512}), nullptr);
}

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

TEST(ButtonWinTest, EachStateReplacesTheOneBefore) {
    test::ScreenRig rig;
    ButtonWin nudge(rig.scene, Element::EditRewind, 515, 516);  // 81, 164, 32 x 20
    const Rect covered{81, 164, 33, 20};
    const Pixel first = PlainBitmaps::PixelOfBitmap(515);
    const Pixel second = PlainBitmaps::PixelOfBitmap(516);
    nudge.SetState(1);
    EXPECT_TRUE(rig.ShowsExactly(covered, first));
    nudge.SetState(7);
    EXPECT_TRUE(rig.ShowsExactly(covered, second));
    EXPECT_TRUE(rig.ShowsExactly({}, first));
    nudge.SetState(0);
    EXPECT_TRUE(rig.ShowsExactly({}, second));
    EXPECT_TRUE(rig.ShowsExactly({0, 0, 240, 270}, PlainBitmaps::PixelOfBitmap(494)));
    rig.TakeChanges();
    nudge.SetState(0);
    nudge.Paint();  // what lies beneath stays
    EXPECT_TRUE(rig.TakeChanges().empty());
}

TEST(RecStatusWinTest, ShowsTheLampOfItsStateAndNoneForAnother) {
    test::ScreenRig rig;
    RecStatusWin lamp(rig.scene, Element::RecStatus);
    const Rect place{108, 105, 16, 12};
    lamp.Paint();
    EXPECT_TRUE(rig.ShowsExactly(place, PlainBitmaps::PixelOfBitmap(503)));
    rig.TakeChanges();
    lamp.SetState(0);
    EXPECT_TRUE(rig.TakeChanges().empty());
    lamp.SetState(5);
    EXPECT_TRUE(rig.ShowsExactly(place, PlainBitmaps::PixelOfBitmap(508)));
    EXPECT_EQ(ToUtf8(lamp.Value()), "Rewind");
    for (const int unknown : {6, -1}) {
        lamp.SetState(unknown);
        EXPECT_TRUE(rig.ShowsExactly({0, 0, 240, 270}, PlainBitmaps::PixelOfBitmap(494)));
        EXPECT_EQ(ToUtf8(lamp.Value()), "");
    }
}

TEST(PrgBarWinTest, FillsFromTheLeftAndPaintsOnlyTheDifference) {
    test::ScreenRig rig({.pages = {492, 493}});
    PrgBarWin bar(rig.scene, Element::ProgressBar);  // 20, 108, 195 x 14
    bar.SetProgress(0, 0);
    bar.Paint();
    EXPECT_TRUE(rig.TakeChanges().empty());

    bar.SetProgress(3'000'000'000U, 4'000'000'000U);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{20, 108, 146, 14}}));
    EXPECT_EQ(ToUtf8(bar.Value()), "75%");
    bar.SetProgress(3'000'000'001U, 4'000'000'000U);
    EXPECT_TRUE(rig.TakeChanges().empty());
    bar.SetProgress(9, 5);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{166, 108, 49, 14}}));
    EXPECT_EQ(ToUtf8(bar.Value()), "100%");
    EXPECT_TRUE(rig.IsLitExactly({20, 108, 195, 14}));
    bar.SetProgress(1, 2);  // the next piece of work
    EXPECT_TRUE(rig.IsLitExactly({20, 108, 97, 14}));
    rig.PaintPage();
    bar.Paint();
    EXPECT_TRUE(rig.IsLitExactly({20, 108, 97, 14}));
}

}  // namespace
}  // namespace orma
