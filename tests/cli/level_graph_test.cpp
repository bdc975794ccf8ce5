#include "cli/level_graph.h"

#include <gtest/gtest.h>

#include "cli/level_line.h"

namespace orma::cli {
namespace {

TEST(LevelGraph, DrawsLoudPeriodsTallAndNotesMarksAndCuts) {
    LevelSheet sheet;
    sheet.levels = {79, 79, 40, 0, 0, 40, 79, 79};
    sheet.marks = {3};
    sheet.cuts = {{6, 8, 0}};
    EXPECT_EQ(LevelGraph(sheet, 8, 2),
              "   ##   \n"
              "   ##   \n"
              "---|--xx\n"
              "0:00.00\n");
}

TEST(LevelGraph, KeepsTheLoudestPeriodOfAColumn) {
    LevelSheet sheet;
    sheet.levels.assign(40, 79);
    sheet.levels[25] = 0;
    EXPECT_EQ(LevelGraph(sheet, 20, 1),
              "            #       \n"
              "--------------------\n"
              "0:00.00      0:02.00\n");
}

TEST(LevelGraph, HoldsOutAgainstPositionsBeyondTheTake) {
    LevelSheet sheet;
    sheet.levels = {0};
    sheet.marks = {9};
    sheet.cuts = {{0, 0xFFFFFFFF, 0}};
    EXPECT_EQ(LevelGraph(sheet, 80, 1), "#\nx\n0:00.00\n");
    EXPECT_EQ(LevelGraph({}, 80, 1), "no levels\n");
}

TEST(LevelLine, TellsStateTimesAndLevel) {
    EXPECT_EQ(LevelLine(true, 1250, 20 * 3660, 20, 0, 2),
              "REC   1:02.50  [########################################]  1h:01m left  marks 2");
    EXPECT_EQ(LevelLine(false, 0, 0, 20, 80, 0),
              "wait  0:00.00  [........................................]  0h:00m left");
}

}  // namespace
}  // namespace orma::cli
