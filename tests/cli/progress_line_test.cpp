#include "cli/progress_line.h"

#include <gtest/gtest.h>

namespace orma::cli {
namespace {

TEST(TransferText, TellsRateAndTimeLeftOfWhatIsSentNow) {
    EXPECT_EQ(TransferText(0, 0, 12'000'000, 9000), "0.0 of 12.0 MB");
    EXPECT_EQ(TransferText(0, 3'000'000, 12'000'000, 2000), "3.0 of 12.0 MB, 1.50 MB/s, 0:06 left");
    // What a server held before the attempt was not sent at this rate.
    EXPECT_EQ(TransferText(2'000'000, 3'000'000, 123'000'000, 1000),
              "3.0 of 123.0 MB, 1.00 MB/s, 2:00 left");
    EXPECT_EQ(TransferText(0, 1'000'000, 1'000'000, 1000), "1.0 of 1.0 MB, 1.00 MB/s");
    EXPECT_EQ(TransferText(0, 1, 2, 100), "0.0 of 0.0 MB");
}

}  // namespace
}  // namespace orma::cli
