#include "ui/controls/stripe_win.h"

#include <gtest/gtest.h>

#include "ui/support/screen_rig.h"

namespace orma {
namespace {

struct KnobRig : test::ScreenRig {
    explicit KnobRig(const test::RigOptions& options = {})
        : ScreenRig(options),
          knob(scene, Element::GainKnob, Element::GainKnobMiddle, Element::GainCaption,
               [this](int n) { turns.push_back(n); }) {}

    std::vector<int> turns;
    StripeWin knob;
};

TEST(StripeWinTest, TurnsByStepsOfEightPixelsToTheRightOrUpwards) {
    struct Step {
        Point offset;
        std::vector<int> turns;  // since the press
    };
    const std::vector<std::vector<Step>> drags = {
        {{{7, 0}, {}}, {{8, 0}, {}}, {{9, 0}, {1}}, {{16, 0}, {1}}, {{17, 0}, {1, 1}}},
        {{{-8, 0}, {}}, {{-9, 0}, {-1}}, {{-16, 0}, {-1}}, {{-17, 0}, {-1, -1}}},
        {{{0, -9}, {1}}, {{0, 9}, {1, -2}}},
        {{{5, -4}, {1}}},
        {{{40, 0}, {5}}},
    };
    for (const bool upsideDown : {false, true}) {
        KnobRig rig({.upsideDown = upsideDown});
        const Rect& place = rig.knob.Bounds();
        for (const std::vector<Step>& drag : drags) {  // each press starts afresh
            rig.turns.clear();
            rig.PressAt(rig.knob, {place.x, place.y});
            for (Step step : drag) {
                rig.DragTo({place.x + step.offset.x, place.y + step.offset.y});
                for (int& turn : step.turns)
                    turn *= upsideDown ? -1 : 1;
                EXPECT_EQ(rig.turns, step.turns) << step.offset.x << ", " << step.offset.y;
            }
            rig.Release();
        }
    }
}

TEST(StripeWinTest, PointsFromTheLowerLeftToTheLowerRight) {
    struct Case {
        std::int32_t value;
        Size client;
        bool upsideDown;
        Point end;  // from the knob's middle
    };
    // 5 design pixels long, moved half a pixel to the right and upwards. Cutting off in the window
    // goes to the left and upwards.
    const Case cases[] = {
        {0, {240, 270}, false, {-3, 3}},      // 240 degrees: a trace under -2.5 + 0.5, 4.33 - 0.5
        {65536, {240, 270}, false, {3, 3}},   // -60 degrees: 2.5 + 0.5, 4.33 - 0.5
        {32768, {240, 270}, false, {0, -6}},  // 90 degrees: 0.5 cut off, -5 - 0.5
        {0, {480, 540}, false, {-5, 8}},      // -5 + 0.5, 8.66 - 0.5
        {0, {240, 270}, true, {3, -5}},       // 60 degrees: 2.5 + 0.5, -4.33 - 0.5
    };
    for (const Case& example : cases) {
        KnobRig rig({.client = example.client, .upsideDown = example.upsideDown});
        const int scale = example.client.width / 240;
        const Rect& place = rig.knob.Bounds();
        const Point middle{place.x + 9 * scale, place.y + 9 * scale};
        rig.scene.shown = false;
        rig.knob.KnobSetValue(example.value);
        rig.knob.Paint();
        ASSERT_EQ(rig.ink.lines.size(), 1U);
        const Point end{middle.x + example.end.x, middle.y + example.end.y};
        EXPECT_EQ(rig.ink.lines[0].points, (std::vector<Point>{middle, end})) << example.value;
    }
}

TEST(StripeWinTest, ShowsItsBitmapWithinItsRectangleAndRepaintsForAnotherValue) {
    KnobRig rig;
    rig.knob.Paint();
    rig.TakeChanges();
    rig.knob.KnobSetValue(0);
    EXPECT_TRUE(rig.TakeChanges().empty());
    rig.knob.KnobSetValue(40000);
    for (const Rect& changed : rig.TakeChanges())
        EXPECT_EQ(changed, rig.knob.Bounds());
    EXPECT_TRUE(rig.Shows(rig.knob.Bounds().x, rig.knob.Bounds().y, 519));
    EXPECT_TRUE(rig.IsLitExactly({})) << "this layout has no place for the caption";
}

TEST(StripeWinTest, ShowsItsCaptionWhereTheLayoutPutsIt) {
    const std::string layout = "[GainCaption]\nx=70\ny=40\nw=44\nh=11\n";
    KnobRig rig({.layout = layout});
    rig.knob.Paint();
    EXPECT_TRUE(rig.IsLitExactly({70, 40, 44, 11}));
    KnobRig turned({.upsideDown = true, .layout = layout});
    turned.knob.Paint();
    EXPECT_TRUE(turned.IsLitExactly({240 - 44 - 70, 270 - 11 - 40, 44, 11}));
}

}  // namespace
}  // namespace orma
