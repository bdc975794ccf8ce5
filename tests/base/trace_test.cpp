#include "base/trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"

namespace orma {
namespace {

TEST(Trace, FormatsALineAndNamesAnEmptyOne) {
    Trace("dropped: nobody listens");
    test::TraceLines trace;
    Trace("EOF nr %d n %d", 5, 8);
    Trace("%s", "");
    Trace("%s", std::string(3000, 'y').c_str());
    EXPECT_THAT(trace.lines,
                testing::ElementsAre("EOF nr 5 n 8", "EMPTY!", std::string(3000, 'y')));
}

}  // namespace
}  // namespace orma
