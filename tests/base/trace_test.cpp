#include "base/trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"

namespace orma {
namespace {

TEST(Trace, FormatsALineAndNamesAnEmptyOne) {
    test::TraceLines trace;
    Trace("EOF nr %d n %d", 5, 8);
    Trace("%s", "");
    Trace("%s", std::string(3000, 'y').c_str());
    EXPECT_THAT(trace.lines,
                testing::ElementsAre("EOF nr 5 n 8", "EMPTY!", std::string(3000, 'y')));
}

TEST(Trace, DropsLinesWithoutASink) {
    std::vector<std::string> before;
    {
        test::TraceLines trace;
        Trace("seen");
        before = trace.lines;
    }
    Trace("dropped");
    test::TraceLines after;
    EXPECT_THAT(before, testing::ElementsAre("seen"));
    EXPECT_TRUE(after.lines.empty());
}

}  // namespace
}  // namespace orma
