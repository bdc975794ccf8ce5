#include "audio/files/level_tables.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(LevelTables, FollowTheThreeSlopesOfTheScale) {
    const auto& level = Levels().level;
    const std::pair<std::size_t, int> cases[] = {
        {511, 0},  {482, 2}, {256, 18}, {162, 30},  // three steps a dB down to -9.98 dBFS
        {161, 30}, {51, 45}, {17, 59},              // one and a half down to -29.56
        {16, 60},  {5, 70},  {2, 78},               // one below
        {1, 79},   {0, 79},                         // capped
    };
    for (const auto& [index, expected] : cases)
        EXPECT_EQ(level[index], expected) << index;
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
