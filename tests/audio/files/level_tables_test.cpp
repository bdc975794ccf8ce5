#include "audio/files/level_tables.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(LevelTables, FollowTheThreeSlopesOfTheScaleAndBackToTheLargestPeak) {
    const LevelTables& tables = Levels();
    const std::pair<std::size_t, int> levels[] = {
        {511, 0},  {482, 2}, {256, 18}, {162, 30},  // three steps a dB down to -9.98 dBFS
        {161, 30}, {51, 45}, {17, 59},              // one and a half down to -29.56
        {16, 60},  {5, 70},  {2, 78},               // one below
        {1, 79},   {0, 79},                         // capped
    };
    for (const auto& [index, level] : levels)
        EXPECT_EQ(tables.level[index], level) << index;
    EXPECT_TRUE(std::ranges::is_sorted(tables.level, std::greater<>()));
    // 261 is the last index of level 18 (-5.84: 17.5); no index reaches 77: 3 lies at 75, 2 at 78.
    const std::pair<std::size_t, int> peaks[] = {{0, 255}, {18, 130}, {77, 0}, {78, 1}, {79, 0}};
    for (const auto& [level, peak] : peaks)
        EXPECT_EQ(tables.peak[level], peak) << level;
    EXPECT_EQ(LevelOfPeak(32768), 0) << "beyond the table";
    EXPECT_EQ(LevelOfPeak(63), 79);
    EXPECT_EQ(LevelOfPeak(128), 78);
}

}  // namespace
}  // namespace orma
