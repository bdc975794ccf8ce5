#include "audio/files/riff_walk.h"

#include <algorithm>
#include <array>

#include "base/bytes.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr int kMostChunks = 4096;
constexpr std::uint32_t kFormatBytes = 16;
constexpr std::uint32_t kExtensibleBytes = 40;
constexpr std::uint16_t kExtensible = 0xFFFE;

WaveFormatFields ReadFormat(JStreamFile& file, std::uint32_t chunkBytes) {
    WaveFormatFields format;
    if (chunkBytes < kFormatBytes) return format;
    std::array<std::uint8_t, kExtensibleBytes> bytes{};
    file.Read(bytes.data(), std::min(chunkBytes, kExtensibleBytes));
    format.tag = LoadLe<std::uint16_t>(&bytes[0]);
    format.channels = LoadLe<std::uint16_t>(&bytes[2]);
    format.sampleRate = LoadLe<std::uint32_t>(&bytes[4]);
    format.bitsPerSample = LoadLe<std::uint16_t>(&bytes[14]);
    // The sub-format's identifier begins with the tag it stands for.
    if (format.tag == kExtensible) format.tag = LoadLe<std::uint16_t>(&bytes[24]);
    return format;
}

}  // namespace

RiffContent WalkRiff(JStreamFile& file) {
    RiffContent content;
    const std::uint64_t size = file.GetSize();
    std::uint64_t at = 0;
    for (int chunk = 0; chunk < kMostChunks && at + 8 <= size && file.IsOpen(); ++chunk) {
        std::array<std::uint8_t, 8> head{};
        file.SetPosition(static_cast<std::int32_t>(at));
        file.Read(head.data(), 8);
        if (IsTag(head.data(), "WAVE")) {
            at += 4;
            continue;
        }
        const auto bytes = LoadLe<std::uint32_t>(&head[4]);
        at += 8;
        if (IsTag(head.data(), "RIFF")) continue;
        if (IsTag(head.data(), "data")) {
            content.dataOffset = static_cast<std::uint32_t>(at);
            content.dataLength = bytes;
            break;
        }
        if (IsTag(head.data(), "fmt "))
            content.format = ReadFormat(file, bytes);
        else
            Trace("Id=%.4s,bytecount=%X", reinterpret_cast<const char*>(head.data()), bytes);
        at += std::uint64_t{bytes} + (bytes & 1U);
    }
    return content;
}

}  // namespace orma
