#include "audio/files/rate_converter.h"

#include <set>

#include <gtest/gtest.h>

#include "audio/files/buffer_period.h"
#include "audio/files/signals.h"

namespace orma::test {
namespace {

constexpr std::size_t kFrame = kMp2FrameSamples;

struct Converted {
    Samples left;
    Samples right;
    std::size_t consumed = 0;
};

/// Converts as a caller does that offers what was not consumed again.
Converted ConvertAll(RateConverter& converter, const Samples& in, unsigned channels,
                     std::span<const std::size_t> outputs) {
    Converted all;
    for (const std::size_t count : outputs) {
        Samples left(count);
        Samples right(count);
        const std::size_t needed = converter.InputNeeded(count);
        const auto offered = std::span(in).subspan(all.consumed * channels, needed * channels);
        all.consumed += converter.Convert(offered, channels, left, right);
        all.left.insert(all.left.end(), left.begin(), left.end());
        all.right.insert(all.right.end(), right.begin(), right.end());
    }
    return all;
}

TEST(RateConverter, EqualsTheDefinitionBitForBitAcrossCallsInBothChannels) {
    const Samples in = ExtremeNoise(1, 60000);
    const Samples other = ExtremeNoise(2, 60000);
    const std::vector<std::size_t> outputs = {kFrame, 1,   kFrame, 287, 288, 289,
                                              7,      577, kFrame, 480, 16,  3000};
    std::size_t total = 0;
    for (const std::size_t count : outputs)
        total += count;
    for (const std::uint32_t rate : {44100U, 32000U, 22050U, 8000U, 11025U}) {
        RateConverter converter;
        ASSERT_TRUE(converter.Start(rate));
        LiteralConverter literal{.rate = rate};
        const Samples expected = literal.Convert(in, total);
        const Converted got = ConvertAll(converter, in, 1, outputs);
        EXPECT_EQ(got.left, expected) << rate;
        EXPECT_EQ(got.consumed, literal.position) << rate;
        ASSERT_TRUE(converter.Start(rate));
        const Converted both = ConvertAll(converter, Interleave(in, other), 2, outputs);
        EXPECT_EQ(both.left, expected) << rate;
        EXPECT_EQ(both.right, LiteralConverter{.rate = rate}.Convert(other, total)) << rate;
        EXPECT_EQ(both.consumed, literal.position) << rate;
    }
}

TEST(RateConverter, ConsumesExactlyTheInputRate) {
    RateConverter converter;
    ASSERT_TRUE(converter.Start(44100));
    const Samples in(kFrame);
    Samples out(kFrame);
    std::size_t total = 0;
    std::set<std::size_t> counts;
    for (int frame = 0; frame < 125; ++frame) {  // three seconds
        ASSERT_LE(converter.InputNeeded(kFrame), kFrame);
        const std::size_t consumed = converter.Convert(in, 1, out, {});
        counts.insert(consumed);
        total += consumed;
    }
    EXPECT_EQ(total, 3U * 44100);
    EXPECT_EQ(counts, (std::set<std::size_t>{1058, 1059}));
}

TEST(RateConverter, RefusesRatesThatItCannotConvert) {
    RateConverter converter;
    ASSERT_TRUE(converter.Start(22050));
    for (const std::uint32_t rate : {0U, 44101U, 47999U, 48001U, 96000U}) {
        EXPECT_FALSE(converter.Start(rate)) << rate;
    }
    EXPECT_EQ(converter.InputRate(), 22050U);
}

}  // namespace
}  // namespace orma::test
