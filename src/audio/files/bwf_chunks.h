#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"

namespace orma {

/// The chunks of a published Broadcast-Wave file as value types: encoded by the writers, decoded by
/// the verifier and by listings. Layouts: EBU Tech 3285 (bext), its supplements 1 (MPEG audio, fact
/// and mext) and 3 (levl) and the quality report chunk (qlty). All fields little-endian.

/// RIFF head (12 bytes) and `bext` chunk without its coding history: 622 bytes.
struct BwfHead {
    static constexpr std::uint32_t kBytes = 622;

    std::uint32_t riffSize = 0;
    std::uint32_t bextSize = 604;  // 604 + even coding-history length
    std::array<char, 256> description{};
    std::array<char, 32> originator{};
    std::array<char, 32> originatorReference{};
    std::array<char, 10> originationDate{};
    std::array<char, 8> originationTime{};
    std::uint32_t timeReferenceLow = 0;  // samples since midnight at 48000 Hz
    std::uint32_t timeReferenceHigh = 0;
    std::uint16_t version = 1;
    std::array<std::uint8_t, 64> umid{};  // SMPTE 330M

    /// The head as it stands before a job fills it: its fixed texts and the UMID's label.
    [[nodiscard]] static BwfHead Template();

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static std::optional<BwfHead> Decode(ByteSpan bytes);
};

/// Coding-history bytes as they stand behind the head: the text's length made even, plus two, so
/// that at least one zero ends it.
[[nodiscard]] Bytes EncodeCodingHistory(const std::string& text);

/// The length of a coding history with its lowest bit cleared, the figure in every size.
[[nodiscard]] inline std::uint32_t EvenLength(const std::string& text) {
    return static_cast<std::uint32_t>(text.size()) & ~1U;
}

/// `fmt ` (MPEG-1 audio), `fact`, `mext` and the head of `data`: 88 bytes.
struct MpegFormatBlock {
    static constexpr std::uint32_t kBytes = 88;

    std::uint16_t channels = 1;
    std::uint32_t averageBytesPerSecond = 8000;
    std::uint16_t blockAlign = 192;     // the MP2 frame length in bytes
    std::uint32_t headBitrate = 64000;  // bit/s
    std::uint32_t factSamples = 0;      // frames * 1152
    std::uint16_t frameSize = 192;      // in `mext`
    std::uint32_t dataSize = 0;

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static std::optional<MpegFormatBlock> Decode(ByteSpan bytes);
};

/// `fmt ` (PCM, 48000 Hz, 16 bits), `fact` and the head of `data`: 44 bytes.
struct PcmFormatBlock {
    static constexpr std::uint32_t kBytes = 44;

    std::uint16_t channels = 1;
    std::uint16_t blockAlign = 2;   // kept from the WAV template whatever the channels: deliberate
    std::uint32_t factSamples = 0;  // samples per channel
    std::uint32_t dataSize = 0;

    [[nodiscard]] std::array<std::uint8_t, kBytes> Encode() const;
    [[nodiscard]] static std::optional<PcmFormatBlock> Decode(ByteSpan bytes);
};

/// `levl`: the peak envelope, one byte a buffer period.
struct LevlChunk {
    static constexpr std::uint32_t kHeadBytes = 128;

    std::uint32_t blockSize = 9600;             // samples of 48000 Hz a value
    std::uint32_t positionOfPeak = 0xFFFFFFFF;  // index of the first largest value
    std::array<char, 28> timestamp{};           // "YYYY:MM:DD:hh:mm:ss:uuu"
    std::vector<std::uint8_t> peaks;            // linear 0..255

    /// Bytes of the whole chunk with its head: (n with two low bits cleared) + 132.
    [[nodiscard]] static std::uint32_t BlockBytes(std::uint32_t values) {
        return (values & ~3U) + 132;
    }

    [[nodiscard]] Bytes Encode() const;

    /// From the chunk with its 8-byte head; nothing when a length does not fit.
    [[nodiscard]] static std::optional<LevlChunk> Decode(ByteSpan chunk);
};

/// `qlty`: the quality report with the two checksums.
struct QltyChunk {
    static constexpr std::uint32_t kHeadBytes = 16;

    std::uint32_t fileSecurityReport = 0;
    std::uint32_t fileSecurityWave = 0;
    std::string report;  // 8-bit text, lines ended by "\r\n"

    /// Bytes of the whole chunk: ((text length + 16) with two low bits cleared) + 4.
    [[nodiscard]] static std::uint32_t BlockBytes(std::uint32_t textLength) {
        return ((textLength + kHeadBytes) & ~3U) + 4;
    }

    /// The report's checksum: the sum of the block's first (length - 16) bytes while the head is
    /// still zero, that is of the text less its last bytes. Deliberately so; readers rely on it.
    [[nodiscard]] static std::uint32_t ReportSum(const std::string& report);

    [[nodiscard]] Bytes Encode() const;
    [[nodiscard]] static std::optional<QltyChunk> Decode(ByteSpan chunk);
};

}  // namespace orma
