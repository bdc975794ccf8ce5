#pragma once

#include <array>
#include <cstdint>

#include "base/bytes.h"

namespace orma {

/// The 44-byte header of a plain WAV take: RIFF, "fmt " of 16 bytes, "data".
struct WavHeader {
    static constexpr std::uint32_t kBytes = 44;
    static constexpr std::uint32_t kRiffSizeOffset = 4;   // holds file length - 8
    static constexpr std::uint32_t kDataSizeOffset = 40;  // holds file length - 44

    std::uint32_t riffSize = 36;
    std::uint16_t channels = 1;
    std::uint32_t sampleRate = 44100;
    std::uint32_t byteRate = 88200;
    std::uint16_t blockAlign = 2;  // kept from the template whatever the channels: deliberate
    std::uint16_t bitsPerSample = 16;
    std::uint32_t dataSize = 0;

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;

    /// The fields of a header as this system writes it; false for any other beginning of a file.
    [[nodiscard]] static bool Decode(ByteSpan bytes, WavHeader& header);
};

}  // namespace orma
