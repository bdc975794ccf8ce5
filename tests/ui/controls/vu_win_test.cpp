#include "ui/controls/vu_win.h"

#include <random>

#include <gtest/gtest.h>

#include "ui/support/screen_rig.h"

namespace orma {
namespace {

// The element VU in the built-in layout.
constexpr Rect kMeter{32, 23, 10, 80};

/// A meter that is at rest on a fresh page, 5 updates a second unless told otherwise.
struct MeterRig : test::ScreenRig {
    explicit MeterRig(const test::RigOptions& options = {}, unsigned shift = 0)
        : ScreenRig(options), meter(scene, Element::VU, shift, options.upsideDown) {}

    void Update(std::uint8_t level, int times = 1) {
        for (int i = 0; i < times; ++i)
            meter.VuUpdate(level);
    }

    VuWin meter;
};

TEST(VuWinTest, RisesAtOnceAndFallsByAShareOfTheRestScaledToTheWindow) {
    struct Case {
        Size client;
        int afterOne;
        int afterTwo;
    };
    // (79 * 256) >> 2 = 5056, which is 19 and three quarters; then 5056 + 3792 = 8848, which is 34.
    for (const Case& example : {Case{{240, 270}, 19, 34}, Case{{480, 540}, 38, 68}}) {
        MeterRig rig({.client = example.client}, 2);
        rig.Update(0);
        EXPECT_EQ(rig.meter.BarOffset(), 0);
        rig.Update(79);
        EXPECT_EQ(rig.meter.BarOffset(), example.afterOne);
        rig.Update(79);
        EXPECT_EQ(rig.meter.BarOffset(), example.afterTwo);
        EXPECT_EQ(rig.meter.PeakOffset(), 0);
    }
}

TEST(VuWinTest, CopiesOnlyTheRowsThatChange) {
    MeterRig rig;
    const auto rows = [](int from, int to) {
        return std::vector<Rect>{{kMeter.x, kMeter.y + from, kMeter.w, to - from}};
    };
    rig.Update(80);
    EXPECT_TRUE(rig.TakeChanges().empty());
    rig.Update(40);
    EXPECT_EQ(rig.TakeChanges(), rows(40, 80));
    rig.Update(40);
    EXPECT_TRUE(rig.TakeChanges().empty());
    rig.Update(20);
    EXPECT_EQ(rig.TakeChanges(), rows(20, 40));
    rig.Update(22);  // within the marker of the peak
    EXPECT_TRUE(rig.TakeChanges().empty());
    rig.Update(30);
    EXPECT_EQ(rig.TakeChanges(), rows(23, 30));
    rig.Update(25);
    EXPECT_EQ(rig.TakeChanges(), rows(25, 30));
    rig.Update(0);  // with the lamp
    EXPECT_EQ(rig.TakeChanges(), rows(-8, 25));
    rig.meter.VuInit();
    EXPECT_EQ(rig.TakeChanges(), rows(-8, 80));
    EXPECT_TRUE(rig.IsLitExactly({}));
}

TEST(VuWinTest, HoldsPeakAndLampForASecondInWhichTheBarStaysBelow) {
    MeterRig rig({}, 1);  // 10 updates a second
    const Rect lampAndMarker{kMeter.x, kMeter.y - 8, kMeter.w, 8 + 3};
    const auto isHeld = [&] {
        const int x = kMeter.x;
        return rig.IsLit(x, kMeter.y - 8) && rig.IsLit(x, kMeter.y + 2) &&
               rig.IsDark(x, kMeter.y + 3);
    };
    rig.Update(0);
    EXPECT_TRUE(rig.IsLitExactly({kMeter.x, kMeter.y - 8, kMeter.w, 88}));
    rig.Update(79, 9);
    EXPECT_TRUE(isHeld());
    rig.Update(0);  // begins anew
    rig.Update(79, 9);
    EXPECT_TRUE(isHeld());
    rig.TakeChanges();
    rig.Update(79);
    EXPECT_EQ(rig.TakeChanges().front(), lampAndMarker);
    const int bar = rig.meter.BarOffset();
    EXPECT_EQ(rig.meter.PeakOffset(), bar);
    EXPECT_TRUE(rig.IsLitExactly({kMeter.x, kMeter.y + bar, kMeter.w, 80 - bar}));
}

TEST(VuWinTest, AReleasedPeakLeavesTheBarWhole) {
    // A steady tone one step below its peak: the marker's lower rows are the bar's.
    MeterRig rig;
    rig.Update(10);
    rig.Update(11, 5);
    EXPECT_EQ(rig.meter.PeakOffset(), 11);
    EXPECT_TRUE(rig.IsLitExactly({kMeter.x, kMeter.y + 11, kMeter.w, 69}));
}

TEST(VuWinTest, HangsUpsideDownWithItsLampBelow) {
    MeterRig rig({.upsideDown = true});
    const Rect turned{240 - 10 - 32, 270 - 80 - 23, 10, 80};
    rig.Update(30);
    EXPECT_TRUE(rig.IsLitExactly({turned.x, turned.y, turned.w, 50}));
    rig.Update(0);
    EXPECT_TRUE(rig.IsLitExactly({turned.x, turned.y, turned.w, 88}));
}

TEST(VuWinTest, LooksTheSameDrawnUpdateByUpdateAndUncovered) {
    std::mt19937 random(7);
    for (const bool upsideDown : {false, true}) {
        for (const Size client : {Size{240, 270}, Size{317, 356}, Size{480, 540}}) {
            const test::RigOptions options{.client = client, .upsideDown = upsideDown};
            MeterRig drawn(options, 1);
            MeterRig hidden(options, 1);
            hidden.scene.shown = false;
            int level = 40;
            for (int i = 0; i < 400; ++i) {
                if (random() % 16 == 0) level = static_cast<int>(random() % 81);
                const auto byte = static_cast<std::uint8_t>(level + static_cast<int>(random() % 2));
                drawn.meter.VuUpdate(byte);  // up to 81: a damaged level file
                hidden.meter.VuUpdate(byte);
                ASSERT_TRUE(hidden.TakeChanges().empty());
                hidden.PaintPage();
                hidden.meter.Paint();
                hidden.TakeChanges();
                ASSERT_EQ(drawn.image.pixels, hidden.image.pixels)
                    << "update " << i << ", width " << client.width;
            }
        }
    }
}

TEST(VuWinTest, TellsItsLevelInDb) {
    MeterRig rig;
    const auto value = [&](std::uint8_t level) {
        rig.Update(level);
        return ToUtf8(rig.meter.Value());
    };
    EXPECT_EQ(value(0), "0 dB");
    EXPECT_EQ(value(9), "-3 dB");
    EXPECT_EQ(value(30), "-10 dB");
    EXPECT_EQ(value(60), "-30 dB");
    EXPECT_EQ(value(78), "-48 dB");
    EXPECT_EQ(value(79), "-49 dB or less");
}

}  // namespace
}  // namespace orma
