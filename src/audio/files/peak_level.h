#pragma once

#include <cstdint>
#include <span>

#include "base/bytes.h"

namespace orma {

/// The largest absolute value of 16-bit samples, 0..32768, over all channels.
[[nodiscard]] std::uint32_t PeakOf16Bit(std::span<const std::int16_t> samples);

/// The largest of the signed upper 16 bits of 24-bit samples, 0..32767. Negative samples do not
/// count, deliberately: levels of existing 24-bit recordings were made so. `sampleBytes`: 3 as they
/// are packed, or 2 where only their upper 16 bits are left.
[[nodiscard]] std::uint32_t PeakOf24Bit(ByteSpan samples, std::size_t sampleBytes = 3);

}  // namespace orma
