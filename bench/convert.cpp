// bench_convert MONO.WAV STEREO.WAV: conversion from 44100 to 48000 Hz against sox, and bit by bit
// against the definition in its plainest form.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "audio/files/buffer_period.h"
#include "audio/files/rate_converter.h"
#include "measure.h"

namespace orma::bench {
namespace {

using Samples = std::vector<std::int16_t>;

/// The table in one line: 16 taps of 480 places, a sinc under a Hann window, without fractions.
std::vector<std::int32_t> Table() {
    std::vector<std::int32_t> h(7680);
    for (int m = 0; m < 7680; ++m) {
        const double t = (m - 3840) / 480.0;
        const double x = std::numbers::pi * t;
        const double window = std::cos(x / 16);
        h[static_cast<std::size_t>(m)] = static_cast<std::int32_t>(
            32767 * (m == 3840 ? 1.0 : std::sin(x) / x) * window * window);
    }
    return h;
}

/// One channel of interleaved `in`, output by output, tap by tap.
Samples Literal(const Samples& in, unsigned channels, unsigned channel, std::size_t outputs) {
    const std::vector<std::int32_t> h = Table();
    Samples out;
    out.reserve(outputs);
    std::uint32_t p = 0;
    std::size_t i = 0;
    while (out.size() < outputs) {
        const std::uint32_t k = (48000 - p) / 100;
        std::int32_t sum = 0;
        for (std::uint32_t j = 0; j < 16 && k + 480 * j < 7680; ++j)
            sum += (h[k + 480 * j] * in[(i + j) * channels + channel]) >> 4;
        out.push_back(static_cast<std::int16_t>(std::clamp(sum >> 11, -32768, 32767)));
        p += 44100;
        if (p >= 48000) {
            p -= 48000;
            ++i;
        }
    }
    return out;
}

/// Frame by frame as the pipeline does; hands each to `take` and returns the outputs made.
template <class Take>
std::size_t Convert(const Samples& in, unsigned channels, Take take) {
    RateConverter converter;
    Require(converter.Start(44100), "the converter refuses 44100 Hz");
    Samples left(kMp2FrameSamples);
    Samples right(kMp2FrameSamples);
    std::size_t made = 0;
    std::size_t at = 0;
    while (at + converter.InputNeeded(kMp2FrameSamples) * channels <= in.size()) {
        at += converter.Convert(std::span(in).subspan(at), channels, left, right) * channels;
        take(left, right);
        made += kMp2FrameSamples;
    }
    return made;
}

void RequireDefinition(const Samples& in, unsigned channels) {
    Samples lines[2];
    const std::size_t made = Convert(in, channels, [&](const Samples& left, const Samples& right) {
        lines[0].insert(lines[0].end(), left.begin(), left.end());
        lines[1].insert(lines[1].end(), right.begin(), right.end());
    });
    Require(made > 0, "nothing was converted");
    for (unsigned channel = 0; channel < channels; ++channel)
        Require(lines[channel] == Literal(in, channels, channel, made),
                "the converter differs from its definition");
}

/// Full-scale noise: it clips, which speech does not.
Samples Noise() {
    Samples noise(2'000'000);
    std::uint32_t state = 1;
    for (std::int16_t& sample : noise) {
        state = state * 1664525 + 1013904223;
        sample = (state & 0x80000000U) != 0 ? 32767 : -32768;
    }
    return noise;
}

void Run(const std::string& topic, const std::string& wav, unsigned channels) {
    const Samples in = WavSamples(wav);
    RequireDefinition(in, channels);
    const std::string sox = "sox -D " + wav + " -t raw /dev/null";
    Compare(topic, {{"ours",
                     [&] { Require(Convert(in, channels, [](auto&, auto&) {}) > 0, "no output"); }},
                    {"sox", [&] { Shell(sox + " rate -m 48000"); }},
                    {"soxcopy", [&] { Shell(sox); }}});
}

}  // namespace
}  // namespace orma::bench

int main(int count, char** words) {
    using namespace orma::bench;
    Require(count == 3, "usage: bench_convert MONO.WAV STEREO.WAV");
    for (const unsigned channels : {1U, 2U})
        RequireDefinition(Noise(), channels);
    Run("convert.mono", words[1], 1);
    Run("convert.stereo", words[2], 2);
}
