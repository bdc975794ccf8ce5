#pragma once

#include <cstdint>

#include "audio/files/audio_state.h"

namespace orma {

/// At or below this free space a recording is not started.
inline constexpr std::uint32_t kLeastFreeKilobytes = 1040;

/// What a recording leaves free for level files, the project file and the last buffers.
inline constexpr std::uint32_t kReserveKilobytes = 1024;

/// Free bytes in KB, held at the end of 32 bits (4 TiB).
[[nodiscard]] std::uint32_t FreeKilobytes(std::uint64_t bytes);

/// Whole seconds of recording that fit into `freeKilobytes` less the reserve; none when only the
/// reserve is free. `sampleRate` in Hz counts for WAV, the bit rate for MP2.
[[nodiscard]] std::uint64_t RecordingSeconds(std::uint32_t freeKilobytes, const AudioState& audio,
                                             std::uint32_t sampleRate, std::uint32_t channels);

/// Buffer periods of recording that fit; 0 at 1040 KB or less.
[[nodiscard]] std::uint32_t RecordingPeriods(std::uint32_t freeKilobytes, const AudioState& audio,
                                             std::uint32_t sampleRate, std::uint32_t channels);

/// Buffer periods of `periodBytes` after which a take ends because the positions and sizes of its
/// file are 32-bit. The margin below 4 GiB takes headers and what a device still holds at the end.
[[nodiscard]] std::uint32_t MostPeriodsOfFile(std::uint32_t periodBytes);

}  // namespace orma
