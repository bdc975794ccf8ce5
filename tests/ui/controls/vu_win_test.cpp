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
    // (79 * 256) >> 2 = 5056, which is 19 and three quarters; then 5056 + 3792 = 8848, which is 34.
    for (const int scale : {1, 2}) {
        MeterRig rig({.client = {240 * scale, 270 * scale}}, 2);
        for (const auto& [level, bar] : {std::pair{0, 0}, {79, 19}, {79, 34}}) {
            rig.Update(static_cast<std::uint8_t>(level));
            EXPECT_EQ(rig.meter.BarOffset(), bar * scale);
        }
        EXPECT_EQ(rig.meter.PeakOffset(), 0);
    }
}

TEST(VuWinTest, CopiesOnlyTheRowsThatChange) {
    MeterRig rig;
    const struct {
        std::uint8_t level;
        int from, to;  // rows
    } updates[] = {
        {80, 0, 0},   {40, 40, 80}, {40, 0, 0},  {20, 20, 40}, {22, 0, 0},  // the peak's marker
        {30, 23, 30}, {25, 25, 30}, {0, -8, 25},                            // with the lamp
    };
    for (const auto& [level, from, to] : updates) {
        rig.Update(level);
        std::vector<Rect> rows = {{kMeter.x, kMeter.y + from, kMeter.w, to - from}};
        if (to == from) rows.clear();
        EXPECT_EQ(rig.TakeChanges(), rows) << from;
    }
    rig.meter.VuInit();
    EXPECT_TRUE(rig.IsLitExactly({}));
}

TEST(VuWinTest, HoldsPeakAndLampForASecondInWhichTheBarStaysBelow) {
    MeterRig rig({}, 1);  // 10 updates a second
    for (int i = 0; i < 2; ++i) {
        rig.Update(0);  // begins anew
        EXPECT_EQ(rig.meter.PeakOffset(), 0);
        rig.Update(79, 9);
        EXPECT_TRUE(rig.IsLit(kMeter.x, kMeter.y - 8));
        EXPECT_TRUE(rig.IsLit(kMeter.x, kMeter.y + 2));
        EXPECT_TRUE(rig.IsDark(kMeter.x, kMeter.y + 3));
    }
    rig.Update(79);
    const int bar = rig.meter.BarOffset();
    EXPECT_EQ(rig.meter.PeakOffset(), bar);
    EXPECT_TRUE(rig.IsLitExactly({kMeter.x, kMeter.y + bar, kMeter.w, 80 - bar}));
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
    const std::pair<std::uint8_t, const char*> cases[] = {
        {0, "0 dB"},    {9, "-3 dB"},   {30, "-10 dB"},
        {60, "-30 dB"}, {78, "-48 dB"}, {79, "-49 dB or less"},
    };
    for (const auto& [level, words] : cases) {
        rig.Update(level);
        EXPECT_EQ(ToUtf8(rig.meter.Value()), words);
    }
}

}  // namespace
}  // namespace orma
