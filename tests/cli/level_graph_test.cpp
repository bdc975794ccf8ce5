#include "cli/level_graph.h"

#include <gtest/gtest.h>

namespace orma::cli {
namespace {

TEST(LevelGraph, DrawsLoudPeriodsTallAndNotesMarksAndCuts) {
    LevelSheet sheet;
    sheet.levels = {79, 79, 40, 0, 0, 40, 79, 79};
    sheet.marks = {3, 9};
    sheet.cuts = {{6, 0xFFFFFFFF, 0}};
    EXPECT_EQ(LevelGraph(sheet, 8, 2),
              "   ##   \n"
              "   ##   \n"
              "---|--xx\n"
              "0:00.00\n");
    EXPECT_EQ(LevelGraph({}, 80, 1), "no levels\n");
}

}  // namespace
}  // namespace orma::cli
