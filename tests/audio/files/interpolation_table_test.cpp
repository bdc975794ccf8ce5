#include "audio/files/interpolation_table.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "audio/files/tap_sum.h"

namespace orma {
namespace {

using ::testing::ElementsAre;

const InterpolationTable& Table() {
    return InterpolationTable::Get();
}

TEST(InterpolationTable, RowsHoldTheKnownTaps) {
    EXPECT_THAT(Table().At(240).taps, ElementsAre(-13, 135, -421, 932, -1780, 3244, -6367, 20659,
                                                  20659, -6367, 3244, -1780, 932, -421, 135, -13));
    EXPECT_THAT(Table().At(1).taps,
                ElementsAre(0, 0, -1, 4, -8, 15, -29, 65, 32766, -65, 29, -15, 8, -4, 1, 0));
    // At an input sample a row takes that sample alone.
    EXPECT_THAT(Table().At(0).taps,
                ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 32767, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(Table().At(480).taps,
                ElementsAre(0, 0, 0, 0, 0, 0, 0, 32767, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(TapSum, VectorAndPortableSumsAgreeInEveryBit) {
    std::mt19937 random(7);
    std::array<std::int16_t, InterpolationTable::kTaps> x{};
    for (std::uint32_t k = 0; k <= InterpolationTable::kPhases; ++k) {
        const InterpolationTable::Row& row = Table().At(k);
        for (int round = 0; round < 50; ++round) {
            for (std::int16_t& sample : x)
                sample = static_cast<std::int16_t>(random());
            ASSERT_EQ(TapSum(row, x.data()), TapSumPortable(row, x.data())) << k;
        }
        // The largest sums there are: every product has the same sign.
        for (const int sign : {1, -1}) {
            for (std::uint32_t tap = 0; tap < x.size(); ++tap) {
                x[tap] = row.taps[tap] * sign > 0 ? 32767 : -32768;
            }
            ASSERT_EQ(TapSum(row, x.data()), TapSumPortable(row, x.data())) << k;
        }
    }
}

}  // namespace
}  // namespace orma
