#include "cli/level_graph.h"

#include <gtest/gtest.h>

namespace orma::cli {
namespace {

TEST(LevelGraph, DrawsTheLoudestPeriodOfEachColumnWithMarksAndCuts) {
    LevelSheet sheet;
    sheet.levels = {79, 79, 79, 79, 79, 40, 79, 0, 79, 0, 40, 79, 79, 79, 79, 79};
    sheet.marks = {7, 99};
    sheet.cuts = {{12, 0xFFFFFFFF, 0}};
    EXPECT_EQ(LevelGraph(sheet, 8, 2),
              "   ##   \n"
              "   ##   \n"
              "---|--xx\n"
              "0:00.00\n");
    EXPECT_EQ(LevelGraph({}, 80, 1), "no levels\n");
}

}  // namespace
}  // namespace orma::cli
