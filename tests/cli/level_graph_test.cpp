#include "cli/level_graph.h"

#include <gtest/gtest.h>

namespace orma::cli {
namespace {

TEST(LevelGraph, DrawsTheLoudestPeriodOfEachColumnWithMarksAndCuts) {
    LevelSheet sheet;
    sheet.levels = {79, 79, 40, 0, 0, 40, 79, 79};
    sheet.marks = {3, 9};
    sheet.cuts = {{6, 0xFFFFFFFF, 0}};
    EXPECT_EQ(LevelGraph(sheet, 8, 2),
              "   ##   \n"
              "   ##   \n"
              "---|--xx\n"
              "0:00.00\n");
    sheet = {};
    EXPECT_EQ(LevelGraph(sheet, 80, 1), "no levels\n");
    sheet.levels.assign(40, 79);
    sheet.levels[25] = 0;
    EXPECT_EQ(LevelGraph(sheet, 20, 1),
              "            #       \n"
              "--------------------\n"
              "0:00.00      0:02.00\n");
}

}  // namespace
}  // namespace orma::cli
