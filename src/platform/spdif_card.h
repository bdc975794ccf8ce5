#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/bytes.h"
#include "base/text.h"

namespace orma {

/// Device controls of the card. Input and output are little-endian; what an input block has beyond
/// the stated bytes is 0, the output block always has SpdifCard::kAnswerBytes.
enum class SpdifControl : std::uint32_t {
    kReadStatus = 0x1B0414,     // out: 16 bits, 0 = a valid signal
    kStop = 0x1B0418,           // ends capture
    kReadRate = 0x1B041C,       // out: 8 bits, sampling-frequency code of IEC 60958-3
    kSelectInput = 0x1B0420,    // in: 8 bits, which digital input
    kSetRing = 0x1B0430,        // in: SpdifRingBlock
    kWriteRegister = 0x1B0450,  // in: 16 bits, the control register
    kReadRegister = 0x1B0454,   // out: 16 bits
};

/// Tells the card where in the ring both sides begin: four 32-bit numbers, the last one 0.
struct SpdifRingBlock {
    static constexpr std::size_t kBytes = 16;

    std::uint32_t writePosition = 0;  // bytes
    std::uint32_t size = 0x30000;     // 16-bit words: SpdifCard::kRingBytes
    std::uint32_t readPosition = 0;   // bytes

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static SpdifRingBlock Decode(std::span<const std::uint8_t, kBytes> bytes);
};

/// Hz of a sampling-frequency code of the channel status (IEC 60958-3); 0 for any other code.
[[nodiscard]] std::uint32_t SpdifRateOfCode(std::uint8_t code);

/// The code of a rate; 1, "not indicated", for a rate that has none.
[[nodiscard]] std::uint8_t SpdifCodeOfRate(std::uint32_t hz);

/// The S/PDIF digital-input card, "PSI1:": controls, and a ring of sample memory that the card
/// writes and the program reads. Absent hardware is the normal case: then Open fails. UI thread.
class SpdifCard {
  public:
    /// The ring holds interleaved stereo frames of two 3-byte little-endian samples; its size is a
    /// whole number of frames.
    static constexpr std::uint32_t kRingBytes = 0x60000;
    static constexpr std::uint32_t kSampleBytes = 3;
    static constexpr std::uint32_t kFrameBytes = 2 * kSampleBytes;
    static constexpr std::size_t kAnswerBytes = 128;
    using Answer = std::array<std::uint8_t, kAnswerBytes>;

    virtual ~SpdifCard() = default;

    /// What is there, for listings; empty when nothing is. Does not open it.
    [[nodiscard]] virtual Text Name() = 0;

    /// False when there is no such device or it is in use.
    [[nodiscard]] virtual bool Open() = 0;

    /// Sends a control to the open card; false when it does not answer.
    [[nodiscard]] virtual bool Control(SpdifControl code, ByteSpan input, Answer& answer) = 0;

    [[nodiscard]] virtual ByteSpan Ring() const = 0;

    /// Where in the ring (bytes) the card writes next. It moves in this call alone, so the ring is
    /// still until the next one; it never overtakes the read position. After kStop, further calls
    /// bring what was captured before.
    [[nodiscard]] virtual std::uint32_t WritePosition() = 0;

    /// Where in the ring (bytes) the program reads next.
    virtual void SetReadPosition(std::uint32_t position) = 0;

    /// Frames that were lost since the input was selected, because the program did not read.
    [[nodiscard]] virtual std::uint64_t LostFrames() const = 0;

    /// Lets the card work for about `ms` milliseconds; blocks.
    virtual void Wait(std::uint32_t ms) = 0;

    virtual void Close() = 0;
};

}  // namespace orma
