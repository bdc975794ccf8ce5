#pragma once

#include <cstdint>

namespace orma {

/// The program's unit of time inside a recording is the buffer period: 200 ms >> resolution shift.
/// Positions, lengths, marks, cuts, clips and levels count buffer periods.

inline constexpr std::uint32_t kLargestShift = 2;  // of the finest resolution

/// Buffer periods a second: 5 << shift, for the resolution shifts 0 to kLargestShift.
[[nodiscard]] constexpr std::uint32_t PeriodsPerSecond(unsigned shift) {
    return 5U << shift;
}

/// Bytes of one period of mono 16-bit sound at shift 0 for the two rates of the sound devices.
inline constexpr std::uint32_t kPeriodBytes44100 = 17640;
inline constexpr std::uint32_t kPeriodBytes48000 = 19200;

/// Samples per channel of one MPEG-1 Layer II frame.
inline constexpr std::uint32_t kMp2FrameSamples = 1152;

/// The MP2 frame that holds period `n`, always the lower one: 125/3 frames a second at 48000 Hz.
[[nodiscard]] constexpr std::uint32_t Mp2FrameOfPeriod(std::uint32_t n, unsigned shift) {
    return static_cast<std::uint32_t>(std::uint64_t{n} * 125 / (3 * PeriodsPerSecond(shift)));
}

}  // namespace orma
