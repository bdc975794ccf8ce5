#include "audio/files/peak_level.h"

#include <algorithm>
#include <cstdlib>

namespace orma {

std::uint32_t PeakOf16Bit(std::span<const std::int16_t> samples) {
    std::int32_t peak = 0;
    for (const std::int16_t sample : samples)
        peak = std::max(peak, std::abs(std::int32_t{sample}));
    return static_cast<std::uint32_t>(peak);
}

std::uint32_t PeakOf24Bit(ByteSpan samples, std::size_t sampleBytes) {
    std::int16_t peak = 0;
    for (std::size_t end = sampleBytes; end <= samples.size(); end += sampleBytes)
        peak = std::max(peak, LoadLe<std::int16_t>(&samples[end - 2]));
    return static_cast<std::uint32_t>(peak);
}

}  // namespace orma
