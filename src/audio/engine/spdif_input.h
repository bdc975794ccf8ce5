#pragma once

#include <cstdint>

#include "platform/wave.h"

namespace orma {

/// How an attempt to capture from the S/PDIF card ended.
enum class SpdifResult : std::uint8_t {
    kCapturing = 0,
    kNoCard = 1,    // it does not answer
    kNoSignal = 2,  // nothing usable comes in
    kNoDriver = 3,  // it cannot be opened
    kRateNotForMp2 = 4,
};

/// What the card delivers once it captures.
struct SpdifFormat {
    std::uint32_t sampleRate = 44100;  // Hz
    std::uint16_t bitsPerSample = 16;  // 16 or 24
    std::uint32_t bufferLength = 0;    // bytes of one buffer period
};

/// The digital input as the recorder sees it. UI thread; buffers come back as events, never from
/// within a call.
class SpdifInput {
  public:
    virtual ~SpdifInput() = default;

    /// Opens the card and starts capture. `channels` 1 or 2, `shift` the resolution shift; `format`
    /// is set when the result is kCapturing. Blocks up to 100 ms while the card measures the rate.
    [[nodiscard]] virtual SpdifResult PDAudioStart(bool mp2, std::uint16_t channels, unsigned shift,
                                                   WaveInEvents& events, SpdifFormat& format) = 0;

    /// Puts a buffer into the ring of sixteen; false when all places are taken.
    [[nodiscard]] virtual bool PDAudioInAddBuffer(WaveHeader& header) = 0;

    /// Ends capture. What was captured before fills further buffers; the last one comes back as
    /// full, zeros behind what it holds.
    virtual void PDAudioStop() = 0;

    /// Closes the card; buffers in the ring or on their way back are forgotten.
    virtual void PDAudioClose() = 0;

    /// Whether buffers are on their way back.
    [[nodiscard]] virtual bool IsReturning() const = 0;

    /// Whether sound follows behind the buffer that came back last: more buffers are on their way,
    /// or would be if one were added.
    [[nodiscard]] virtual bool HasMore() const = 0;

    /// Sample frames lost since the last start.
    [[nodiscard]] virtual std::uint64_t LostFrames() const = 0;
};

}  // namespace orma
