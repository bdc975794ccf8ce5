#include "audio/files/tap_sum.h"

#include <gtest/gtest.h>

#include "audio/files/interpolation_table.h"
#include "support/signals.h"

namespace orma::test {
namespace {

TEST(TapSum, VectorAndPortableSumsAgreeInEveryBit) {
    constexpr std::size_t kTaps = InterpolationTable::kTaps;
    const Samples noise = ExtremeNoise(7, 50 + kTaps);
    for (std::uint32_t k = 0; k <= InterpolationTable::kPhases; ++k) {
        const InterpolationTable::Row& row = InterpolationTable::Get().At(k);
        for (std::size_t at = 0; at < 50; ++at)
            ASSERT_EQ(TapSum(row, &noise[at]), TapSumPortable(row, &noise[at])) << k;
        // The largest sums there are: every product has the same sign.
        for (const int sign : {1, -1}) {
            Samples x(kTaps);
            for (std::size_t tap = 0; tap < kTaps; ++tap)
                x[tap] = row.taps[tap] * sign > 0 ? 32767 : -32768;
            ASSERT_EQ(TapSum(row, x.data()), TapSumPortable(row, x.data())) << k;
        }
    }
}

}  // namespace
}  // namespace orma::test
