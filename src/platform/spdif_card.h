#pragma once

#include <cstdint>

#include "platform/wave.h"

namespace orma {

/// How an attempt to capture from the card ended.
enum class SpdifResult : std::uint8_t {
    kCapturing = 0,
    kNoCard = 1,
    kNoSignal = 2,
    kNoDriver = 3,
    kRateNotForMp2 = 4,
};

/// What the card delivers once it captures.
struct SpdifFormat {
    std::uint32_t sampleRate = 44100;  // Hz
    std::uint16_t bitsPerSample = 16;  // 16 or 24
    std::uint32_t bufferLength = 0;    // bytes of one buffer period
};

/// The S/PDIF digital-input card. Absent hardware is the normal case. UI thread.
class SpdifCard {
  public:
    virtual ~SpdifCard() = default;

    /// Opens the card and starts capture. `channels` 1 or 2, `shift` the resolution shift.
    [[nodiscard]] virtual SpdifResult Start(bool mp2, std::uint16_t channels, unsigned shift,
                                            WaveInEvents& events, SpdifFormat& format) = 0;

    /// Puts a buffer into the ring of sixteen; false when all places are taken.
    [[nodiscard]] virtual bool AddBuffer(WaveHeader& header) = 0;

    /// Stops capture and hands back the current buffer.
    virtual void Stop() = 0;

    virtual void Close() = 0;
};

}  // namespace orma
