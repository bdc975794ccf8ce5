#include "cli/position.h"

#include <gtest/gtest.h>

namespace orma::cli {
namespace {

TEST(Position, IsMinutesAndSecondsOrPeriodsAndNothingElse) {
    EXPECT_EQ(ParsePosition("62.5", 20), 1250U);
    EXPECT_EQ(ParsePosition("7", 5), 35U);
    EXPECT_EQ(ParsePosition("#17", 20), 17U);
    EXPECT_EQ(ParsePosition("0.074", 20), 1U) << "rounded to the nearest period";
    for (const char* text : {"", "abc", "1:60", "-1", "1:", ":5", "#-1", "#1.5", "1:2:3", "1e30",
                             "nan", "inf", "5s", " 5", "#4294967296"})
        EXPECT_FALSE(ParsePosition(text, 20)) << text;
    for (const std::uint32_t periods : {0U, 1U, 19U, 1200U, 1250U, 720000U})
        EXPECT_EQ(ParsePosition(PositionText(periods, 20), 20), periods);
    EXPECT_EQ(PositionText(1250, 20), "1:02.50");
}

}  // namespace
}  // namespace orma::cli
