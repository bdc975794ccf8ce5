#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/bytes.h"

namespace orma {

/// How a digital input hands over its samples, little-endian.
enum class DigitalLayout {
    k24In3Bytes,
    k24In4Bytes,   // in the lower three
    k24InUpper32,  // in the upper three of four
    k16,
};

[[nodiscard]] std::size_t BytesOfSample(DigitalLayout layout);

/// Writes the samples of `from` as 3-byte little-endian ones; `to` has room for them. 16-bit ones
/// become the upper two bytes. Does not allocate.
void PackDigitalSamples(DigitalLayout layout, ByteSpan from, std::span<std::uint8_t> to);

/// The rate that a channel status (its first 24 bytes, consumer format) tells; 0 when it does not.
[[nodiscard]] std::uint32_t DigitalRateOfStatus(ByteSpan channelStatus);

}  // namespace orma
