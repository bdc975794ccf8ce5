#include "audio/files/level_tables.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(LevelTables, FollowTheThreeSlopesOfTheScale) {
    const auto& level = Levels().level;
    EXPECT_EQ(level[511], 0);   // 0 dBFS
    EXPECT_EQ(level[482], 2);   // -0.51 dBFS: 1.52 rounded
    EXPECT_EQ(level[256], 18);  // -6.00: three steps a dB
    EXPECT_EQ(level[162], 30);  // -9.98, the last of the first slope
    EXPECT_EQ(level[161], 30);  // -10.03: 15 + one and a half a dB
    EXPECT_EQ(level[51], 45);   // -20.02
    EXPECT_EQ(level[17], 59);   // -29.56
    EXPECT_EQ(level[16], 60);   // -30.09: 30 + one a dB
    EXPECT_EQ(level[5], 70);    // -40.19
    EXPECT_EQ(level[2], 78);    // -48.15
    EXPECT_EQ(level[1], 79);    // -54.17, capped
    EXPECT_EQ(level[0], 79);
    EXPECT_TRUE(std::ranges::is_sorted(level, std::greater<>()));
}

TEST(LevelTables, ALevelMapsBackToTheLargestPeakThatProducedIt) {
    const LevelTables& tables = Levels();
    EXPECT_EQ(tables.peak[0], 255);
    EXPECT_EQ(tables.peak[18], 130);  // 261 is the last index of level 18 (-5.84: 17.5)
    EXPECT_EQ(tables.peak[78], 1);
    EXPECT_EQ(tables.peak[79], 0);
    EXPECT_EQ(tables.peak[77], 0);  // no index reaches it: 3 lies at 75, 2 at 78
    EXPECT_TRUE(std::all_of(tables.peak.begin() + 79, tables.peak.end(),
                            [](std::uint8_t peak) { return peak == 0; }));
}

TEST(LevelTables, APeakBeyondTheTableCountsAsItsLast) {
    EXPECT_EQ(LevelOfPeak(32768), 0);
    EXPECT_EQ(LevelOfPeak(32767), 0);
    EXPECT_EQ(LevelOfPeak(63), 79);
    EXPECT_EQ(LevelOfPeak(128), 78);
}

}  // namespace
}  // namespace orma
