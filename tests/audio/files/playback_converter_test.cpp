// How good the conversion is. That each output is the sum it should be, whatever the steps in which
// it is asked for, the playback property tests prove.

#include "audio/files/playback_converter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "support/signals.h"

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

Samples Converted(Rates rates, const Samples& in) {
    constexpr std::size_t kStep = 1050;
    PlaybackConverter converter;
    converter.Start(rates.in, rates.out);
    Samples all;
    for (std::size_t at = 0; at + converter.InputNeeded(kStep) <= in.size();) {
        Samples out(kStep);
        at += converter.Convert(std::span(in).subspan(at, converter.InputNeeded(kStep)), 1, out);
        all.insert(all.end(), out.begin(), out.end());
    }
    return all;
}

double ToneQualityDb(Rates rates, double hz) {
    const Samples got = Converted(rates, Tone(hz, rates.in, 20000, rates.in));
    // Output 0 lies at the middle of its window.
    const double lead = std::ceil(8 * std::max(1.0, double{1} * rates.in / rates.out)) - 1;
    double signal = 0;
    double error = 0;
    for (std::size_t n = 0; n < got.size(); ++n) {
        const double seconds = static_cast<double>(n) / rates.out + lead / rates.in;
        const double expected = 20000 * std::sin(2 * std::numbers::pi * hz * seconds);
        signal += expected * expected;
        error += (expected - got[n]) * (expected - got[n]);
    }
    return 10 * std::log10(signal / error);
}

TEST(PlaybackConverter, KeepsSoundInPlaceAndCleanAndFoldsNothingBack) {
    for (const Rates& rates : kAllRates) {
        SCOPED_TRACE(std::to_string(rates.in) + " to " + std::to_string(rates.out));
        EXPECT_GT(ToneQualityDb(rates, 100), 80.0);
        EXPECT_GT(ToneQualityDb(rates, 1000), 70.0);
        EXPECT_GT(ToneQualityDb(rates, 8000), 60.0);
        for (const std::int16_t full : {std::int16_t{32767}, std::int16_t{-32768}})
            EXPECT_EQ(Converted(rates, Samples(5000, full)),
                      Samples(Converted(rates, Samples(5000)).size(), full));
        // More than 40 dB down, where a kernel that is not stretched gives nearly all of it.
        if (rates.in >= 88200) {
            EXPECT_LT(std::ranges::max(Converted(rates, Tone(30000, rates.in, 20000, 50000))), 200);
        }
    }
}

}  // namespace
}  // namespace orma::test
