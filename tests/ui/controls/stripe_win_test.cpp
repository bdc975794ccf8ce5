#include "ui/controls/stripe_win.h"

#include <gtest/gtest.h>

#include "ui/support/screen_rig.h"

namespace orma {
namespace {

struct KnobRig : test::ScreenRig {
    explicit KnobRig(const test::RigOptions& options = {})
        : ScreenRig(options),
          knob(scene, Element::GainKnob, Element::GainKnobMiddle,
               [this](int n) { turns.push_back(n); }) {}

    std::vector<int> turns;
    StripeWin knob;
};

TEST(StripeWinTest, TurnsByStepsOfEightPixelsToTheRightOrUpwards) {
    struct Case {
        Point offset;
        std::vector<int> turns;  // since the press
    };
    const std::vector<std::vector<Case>> drags = {
        {{{7, 0}, {}}, {{8, 0}, {}}, {{9, 0}, {1}}, {{16, 0}, {1}}, {{17, 0}, {1, 1}}},
        {{{-8, 0}, {}}, {{-9, 0}, {-1}}, {{-16, 0}, {-1}}, {{-17, 0}, {-1, -1}}},
        {{{0, -9}, {1}}, {{0, 9}, {1, -2}}},
        {{{5, -4}, {1}}},
        {{{-17, 0}, {-2}}},
        {{{40, 0}, {5}}},
    };
    for (const bool upsideDown : {false, true}) {
        for (const std::vector<Case>& drag : drags) {
            KnobRig rig({.upsideDown = upsideDown});
            const Rect& place = rig.knob.Bounds();
            const Point at{place.x + 3, place.y + 3};
            ASSERT_EQ(rig.PressAt(rig.knob, at), &rig.knob);
            for (const Case& step : drag) {
                rig.DragTo({at.x + step.offset.x, at.y + step.offset.y});
                std::vector<int> expected = step.turns;
                for (int& turn : expected)
                    turn *= upsideDown ? -1 : 1;
                EXPECT_EQ(rig.turns, expected) << step.offset.x << ", " << step.offset.y;
            }
            // The next press starts afresh.
            rig.Release();
            rig.turns.clear();
            rig.PressAt(rig.knob, at);
            rig.DragTo({at.x + 8, at.y});
            EXPECT_TRUE(rig.turns.empty());
        }
    }
}

}  // namespace
}  // namespace orma
