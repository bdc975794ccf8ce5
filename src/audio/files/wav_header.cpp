#include "audio/files/wav_header.h"

namespace orma {
namespace {

constexpr std::uint32_t kFormatBytes = 16;
constexpr std::uint16_t kPcm = 1;

}  // namespace

std::array<std::uint8_t, WavHeader::kBytes> WavHeader::Encode() const {
    std::array<std::uint8_t, kBytes> bytes{};
    StoreTag(&bytes[0], "RIFF");
    StoreLe(&bytes[4], riffSize);
    StoreTag(&bytes[8], "WAVE");
    StoreTag(&bytes[12], "fmt ");
    StoreLe(&bytes[16], kFormatBytes);
    StoreLe(&bytes[20], kPcm);
    StoreLe(&bytes[22], channels);
    StoreLe(&bytes[24], sampleRate);
    StoreLe(&bytes[28], byteRate);
    StoreLe(&bytes[32], blockAlign);
    StoreLe(&bytes[34], bitsPerSample);
    StoreTag(&bytes[36], "data");
    StoreLe(&bytes[40], dataSize);
    return bytes;
}

bool WavHeader::Decode(ByteSpan bytes, WavHeader& header) {
    if (bytes.size() < kBytes || !IsTag(&bytes[0], "RIFF") || !IsTag(&bytes[8], "WAVE") ||
        !IsTag(&bytes[12], "fmt ") || LoadLe<std::uint32_t>(&bytes[16]) != kFormatBytes ||
        LoadLe<std::uint16_t>(&bytes[20]) != kPcm || !IsTag(&bytes[36], "data"))
        return false;
    header.riffSize = LoadLe<std::uint32_t>(&bytes[4]);
    header.channels = LoadLe<std::uint16_t>(&bytes[22]);
    header.sampleRate = LoadLe<std::uint32_t>(&bytes[24]);
    header.byteRate = LoadLe<std::uint32_t>(&bytes[28]);
    header.blockAlign = LoadLe<std::uint16_t>(&bytes[32]);
    header.bitsPerSample = LoadLe<std::uint16_t>(&bytes[34]);
    header.dataSize = LoadLe<std::uint32_t>(&bytes[40]);
    return true;
}

}  // namespace orma
