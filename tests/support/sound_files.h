#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/bytes.h"
#include "base/text.h"

namespace orma::test {

/// `count` samples of which no stretch repeats soon: consecutive multiples of an odd number.
[[nodiscard]] std::vector<std::int16_t> Ramp(std::size_t count);

/// A 16-bit PCM WAV file with a header of 44 bytes.
void WriteSoundFile(const Text& path, std::uint16_t channels, std::uint32_t hz,
                    std::span<const std::int16_t> samples);

/// The samples of such a file; fails the test when the header does not fit the file.
[[nodiscard]] std::vector<std::int16_t> ReadSoundFile(const Text& path);

/// Little-endian bytes as samples.
[[nodiscard]] std::vector<std::int16_t> AsSamples(ByteSpan bytes);

}  // namespace orma::test
