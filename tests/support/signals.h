#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/bytes.h"

namespace orma::test {

using Samples = std::vector<std::int16_t>;

/// Full-range noise in which every third sample stands at an end of the range.
[[nodiscard]] Samples ExtremeNoise(unsigned seed, std::size_t count);

/// A tone; its phase at sample 0 is 0.
[[nodiscard]] Samples Tone(double hz, double rate, double amplitude, std::size_t count);

[[nodiscard]] ByteSpan AsPcm(const Samples& samples);

/// The recording conversion to 48000 Hz word for word: one sum a sample over the table in one line,
/// from an input position and a phase that it moves on.
struct LiteralConverter {
    std::uint32_t rate = 44100;
    std::uint32_t phase = 0;
    std::size_t position = 0;

    [[nodiscard]] Samples Convert(std::span<const std::int16_t> mono, std::size_t outputs);
};

}  // namespace orma::test
