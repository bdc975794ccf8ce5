#pragma once

#include <array>
#include <cstdint>

#include "audio/files/audio_state.h"

namespace orma {

/// The four header bytes of an MPEG-1 Layer II frame, in file order (ISO/IEC 11172-3, 2.4.1.3).
struct Mp2Header {
    std::array<std::uint8_t, 4> bytes{};

    /// The header that the encoder writes with the present settings.
    [[nodiscard]] static Mp2Header ForSettings(const AudioState& audio);

    /// True for MPEG-1 Layer II with a sync word; padding, CRC and mode may be anything.
    [[nodiscard]] bool IsLayer2() const;

    [[nodiscard]] unsigned BitrateIndex() const { return bytes[2] >> 4; }
    [[nodiscard]] unsigned SamplingBits() const { return (bytes[2] >> 2) & 3U; }  // 1 = 48000 Hz
    [[nodiscard]] bool HasPadding() const { return (bytes[2] & 2U) != 0; }
    [[nodiscard]] bool HasCrc() const { return (bytes[1] & 1U) == 0; }
    [[nodiscard]] unsigned Mode() const { return bytes[3] >> 6; }  // 0 stereo .. 3 single channel

    /// Frame length in bytes as the decoder reckons it: for a Layer II header bit rate * 1152 /
    /// (48000, or 44100 when the sampling bits are 0) / 8, plus the padding byte; otherwise, and
    /// for bit rates that Layer II lacks, `settingFrameBytes`.
    [[nodiscard]] std::uint32_t FrameBytes(std::uint32_t settingFrameBytes) const;
};

}  // namespace orma
