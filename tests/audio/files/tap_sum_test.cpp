#include "audio/files/tap_sum.h"

#include <random>

#include <gtest/gtest.h>

#include "audio/files/interpolation_table.h"

namespace orma {
namespace {

TEST(TapSum, VectorAndPortableSumsAgreeInEveryBit) {
    std::mt19937 random(7);
    std::array<std::int16_t, InterpolationTable::kTaps> x{};
    for (std::uint32_t k = 0; k <= InterpolationTable::kPhases; ++k) {
        const InterpolationTable::Row& row = InterpolationTable::Get().At(k);
        for (int round = 0; round < 50; ++round) {
            for (std::int16_t& sample : x)
                sample = static_cast<std::int16_t>(random());
            ASSERT_EQ(TapSum(row, x.data()), TapSumPortable(row, x.data())) << k;
        }
        // The largest sums there are: every product has the same sign.
        for (const int sign : {1, -1}) {
            for (std::uint32_t tap = 0; tap < x.size(); ++tap)
                x[tap] = row.taps[tap] * sign > 0 ? 32767 : -32768;
            ASSERT_EQ(TapSum(row, x.data()), TapSumPortable(row, x.data())) << k;
        }
    }
}

}  // namespace
}  // namespace orma
