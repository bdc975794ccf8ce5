#pragma once

#include <array>
#include <cstdint>

#include "audio/files/buffer_period.h"
#include "report/error_reporter.h"

namespace orma {

/// The MP2 bit-rate setting: an index 0..11 and what follows from it at 48000 Hz.
class Mp2Bitrate {
  public:
    static constexpr std::array<std::uint32_t, 12> kBitsPerSecond = {
        32000, 48000, 56000, 64000, 80000, 96000, 112000, 128000, 160000, 192000, 224000, 256000};

    Mp2Bitrate() = default;

    [[nodiscard]] std::uint32_t Index() const { return index_; }
    [[nodiscard]] std::uint32_t BitsPerSecond() const { return kBitsPerSecond[index_]; }

    /// Bytes of one frame: 144 * bit rate / 48000, always whole.
    [[nodiscard]] std::uint32_t FrameBytes() const { return BitsPerSecond() * 3 / 1000; }

    /// Bytes of one buffer period: bit rate / (8 * periods a second).
    [[nodiscard]] std::uint32_t BytesPerPeriod(unsigned shift) const {
        return BitsPerSecond() / (8 * PeriodsPerSecond(shift));
    }

    /// Sets the index 0..11; a larger one reports "Illegal bitrate" and changes nothing.
    void SetMp2Bitrate(std::uint32_t index, ErrorReporter& report);

    /// False for the pairs that Layer II forbids and the encoder refuses: mono 224 and 256 kbit/s,
    /// stereo 32, 48, 56 and 80 kbit/s (ISO/IEC 11172-3, 2.4.2.3).
    [[nodiscard]] bool IsLegalFor(bool stereo) const { return IsLegal(index_, stereo); }
    [[nodiscard]] static bool IsLegal(std::uint32_t index, bool stereo);

  private:
    std::uint32_t index_ = 3;
};

}  // namespace orma
