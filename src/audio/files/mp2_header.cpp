#include "audio/files/mp2_header.h"

namespace orma {
namespace {

// kbit/s of the bit-rate indexes 1..14; 0 means a free format, 15 is forbidden.
constexpr std::array<std::uint32_t, 16> kLayer2Kbps = {0,   32,  48,  56,  64,  80,  96,  112,
                                                       128, 160, 192, 224, 256, 320, 384, 0};

}  // namespace

Mp2Header Mp2Header::ForSettings(const AudioState& audio) {
    constexpr std::uint8_t kSampling48000 = 1U << 2;
    constexpr std::uint8_t kOriginal = 1U << 2;
    constexpr std::uint8_t kSingleChannel = 3U << 6;
    const std::uint8_t mode = audio.stereo ? 0 : kSingleChannel;
    const auto rate = static_cast<std::uint8_t>((audio.bitrate.Index() + 1) << 4);
    return {{0xFF, 0xFD, static_cast<std::uint8_t>(rate | kSampling48000),
             static_cast<std::uint8_t>(mode | kOriginal)}};
}

bool Mp2Header::IsLayer2() const {
    return bytes[0] == 0xFF && (bytes[1] & 0xFEU) == 0xFC;
}

std::uint32_t Mp2Header::FrameBytes(std::uint32_t settingFrameBytes) const {
    const std::uint32_t kbps = kLayer2Kbps[BitrateIndex()];
    if (!IsLayer2() || kbps == 0) return settingFrameBytes;
    const std::uint32_t rate = SamplingBits() == 0 ? 44100 : 48000;
    return kbps * 1000 * kMp2FrameSamples / rate / 8 + (HasPadding() ? 1 : 0);
}

}  // namespace orma
