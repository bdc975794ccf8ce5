#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "base/bytes.h"

namespace orma::test {

using Samples = std::vector<std::int16_t>;

/// Full-range noise in which every third sample stands at an end of the range.
[[nodiscard]] inline Samples ExtremeNoise(unsigned seed, std::size_t count) {
    std::mt19937 random(seed);
    Samples samples(count);
    for (std::int16_t& sample : samples) {
        const auto value = static_cast<std::int16_t>(random());
        sample = random() % 3 != 0 ? value : static_cast<std::int16_t>(value < 0 ? -32768 : 32767);
    }
    return samples;
}

/// A tone; its phase at sample 0 is 0.
[[nodiscard]] inline Samples Tone(double hz, double rate, double amplitude, std::size_t count) {
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * hz * static_cast<double>(i) / rate;
        samples[i] = static_cast<std::int16_t>(std::lround(amplitude * std::sin(angle)));
    }
    return samples;
}

[[nodiscard]] inline ByteSpan AsPcm(const Samples& samples) {
    return {reinterpret_cast<const std::uint8_t*>(samples.data()), samples.size() * 2};
}

/// The recording conversion to 48000 Hz word for word: one sum a sample over the table in one line,
/// from an input position and a phase that it moves on.
struct LiteralConverter {
    std::uint32_t rate = 44100;
    std::uint32_t phase = 0;
    std::size_t position = 0;

    [[nodiscard]] Samples Convert(std::span<const std::int16_t> mono, std::size_t outputs) {
        static const std::vector<std::int32_t> table = Table();
        Samples out;
        while (out.size() < outputs) {
            const std::size_t k = (48000 - phase) / 100;
            std::int64_t sum = 0;
            for (std::size_t j = 0; j < 16; ++j) {
                if (k + 480 * j < table.size())
                    sum += (table[k + 480 * j] * mono[position + j]) >> 4;
            }
            out.push_back(
                static_cast<std::int16_t>(std::clamp<std::int64_t>(sum >> 11, -32768, 32767)));
            phase += rate;
            if (phase >= 48000) {
                phase -= 48000;
                ++position;
            }
        }
        return out;
    }

  private:
    static std::vector<std::int32_t> Table() {
        constexpr double kPi = std::numbers::pi;
        std::vector<std::int32_t> table;
        for (int m = 0; m < 7680; ++m) {
            const double t = (m - 3840) / 480.0;
            const double sinc = m == 3840 ? 1.0 : std::sin(kPi * t) / (kPi * t);
            table.push_back(
                static_cast<std::int32_t>(32767 * sinc * std::pow(std::cos(kPi / 2 * t / 8), 2)));
        }
        return table;
    }
};

}  // namespace orma::test
