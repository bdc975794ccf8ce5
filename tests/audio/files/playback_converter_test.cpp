#include "audio/files/playback_converter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "audio/files/signals.h"

namespace orma::test {
namespace {

struct Rates {
    std::uint32_t in;
    std::uint32_t out;
};

constexpr std::array<Rates, 6> kAllRates = {{{44100, 48000},
                                             {48000, 44100},
                                             {88200, 44100},
                                             {88200, 48000},
                                             {96000, 44100},
                                             {96000, 48000}}};

/// The input sample at which output 0 lies.
std::size_t Lead(Rates rates) {
    const double stretch = std::max(1.0, static_cast<double>(rates.in) / rates.out);
    return static_cast<std::size_t>(std::ceil(8 * stretch)) - 1;
}

/// Converts all of `in` in calls of `step` outputs per channel, offering the rest again.
Samples ConvertAll(PlaybackConverter& converter, const Samples& in, unsigned channels,
                   std::size_t step) {
    Samples all;
    std::size_t at = 0;
    while (at + converter.InputNeeded(step) <= in.size() / channels) {
        Samples out(step * channels);
        const auto offered =
            std::span(in).subspan(at * channels, converter.InputNeeded(step) * channels);
        at += converter.Convert(offered, channels, out);
        all.insert(all.end(), out.begin(), out.end());
    }
    return all;
}

PlaybackConverter Started(Rates rates) {
    PlaybackConverter converter;
    converter.Start(rates.in, rates.out);
    return converter;
}

double ToneQualityDb(Rates rates, double hz) {
    PlaybackConverter converter = Started(rates);
    const Samples got = ConvertAll(converter, Tone(hz, rates.in, 20000, rates.in), 1, 1050);
    std::vector<double> expected(got.size());
    for (std::size_t n = 0; n < expected.size(); ++n) {
        const double seconds =
            static_cast<double>(n) / rates.out + static_cast<double>(Lead(rates)) / rates.in;
        expected[n] = 20000 * std::sin(2 * std::numbers::pi * hz * seconds);
    }
    return SignalToErrorDb(expected, got);
}

TEST(PlaybackConverter, KeepsTonesInPlaceAndClean) {
    for (const Rates& rates : kAllRates) {
        EXPECT_GT(ToneQualityDb(rates, 100), 80.0) << rates.in << ' ' << rates.out;
        EXPECT_GT(ToneQualityDb(rates, 1000), 70.0) << rates.in << ' ' << rates.out;
        EXPECT_GT(ToneQualityDb(rates, 8000), 60.0) << rates.in << ' ' << rates.out;
    }
}

TEST(PlaybackConverter, DownwardsNothingFoldsBack) {
    for (const Rates rates : {Rates{96000, 44100}, Rates{96000, 48000}, Rates{88200, 44100}}) {
        PlaybackConverter converter = Started(rates);
        const Samples got = ConvertAll(converter, Tone(30000, rates.in, 20000, 50000), 1, 1050);
        // More than 40 dB down, where a kernel that is not stretched gives nearly all of it.
        EXPECT_LT(std::ranges::max(got), 200) << rates.in << ' ' << rates.out;
    }
}

TEST(PlaybackConverter, ConsumesExactlyTheRatioWithoutDrift) {
    for (const Rates& rates : kAllRates) {
        PlaybackConverter converter = Started(rates);
        const Samples in(4000);
        Samples out(525);
        std::size_t consumed = 0;
        const std::size_t calls = std::size_t{63} * rates.out / 525;  // whole for both rates
        for (std::size_t call = 0; call < calls; ++call) {
            consumed += converter.Convert(in, 1, out);
        }
        EXPECT_EQ(consumed, std::size_t{63} * rates.in) << rates.in << ' ' << rates.out;
    }
}

TEST(PlaybackConverter, NeitherCallSizesNorTheOtherChannelMatter) {
    const Samples left = ExtremeNoise(1, 20000);
    const Samples right = ExtremeNoise(2, 20000);
    for (const Rates& rates : kAllRates) {
        PlaybackConverter converter = Started(rates);
        const Samples once = ConvertAll(converter, left, 1, 5000);
        converter.Start(rates.in, rates.out);
        const Samples stereo = ConvertAll(converter, Interleave(left, right), 2, 1);
        const Samples again = Channel(stereo, 2, 0);
        EXPECT_TRUE(std::equal(once.begin(), once.end(), again.begin())) << rates.in;
        converter.Start(rates.in, rates.out);
        EXPECT_EQ(ConvertAll(converter, right, 1, 1), Channel(stereo, 2, 1)) << rates.in;
    }
}

TEST(PlaybackConverter, FullScaleSteadySoundStaysFullScale) {
    for (const Rates& rates : kAllRates) {
        PlaybackConverter converter = Started(rates);
        for (const std::int16_t value : {std::int16_t{32767}, std::int16_t{-32768}}) {
            const Samples got = ConvertAll(converter, Samples(3000, value), 1, 480);
            ASSERT_FALSE(got.empty());
            EXPECT_EQ(got, Samples(got.size(), value)) << rates.in << ' ' << rates.out;
        }
    }
}

TEST(PlaybackConverter, EqualAndUnknownRatesCopy) {
    const Samples in = Interleave(ExtremeNoise(3, 500), ExtremeNoise(4, 500));
    PlaybackConverter converter;
    converter.Start(96000, 44100);
    for (const Rates rates : {Rates{44100, 44100}, Rates{48000, 48000}, Rates{22050, 44100}}) {
        converter.Start(rates.in, rates.out);
        EXPECT_EQ(converter.InputNeeded(500), 500U);
        EXPECT_EQ(ConvertAll(converter, in, 2, 100), in);
    }
}

}  // namespace
}  // namespace orma::test
