#include "audio/engine/recording_budget.h"

#include <algorithm>
#include <limits>

namespace orma {
namespace {

std::uint32_t Held(std::uint64_t value) {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

std::uint32_t FreeKilobytes(std::uint64_t bytes) {
    return Held(bytes >> 10);
}

std::uint64_t RecordingSeconds(std::uint32_t freeKilobytes, const AudioState& audio,
                               std::uint32_t sampleRate, std::uint32_t channels) {
    if (freeKilobytes <= kReserveKilobytes) return 0;
    // 1 KB is 128 * 64 bits of MP2, or 128 * 4 samples of 16 bits.
    const std::uint32_t rate =
        audio.mp2 ? audio.bitrate.BitsPerSecond() >> 6 : (sampleRate >> 2) * channels;
    return std::uint64_t{freeKilobytes - kReserveKilobytes} * 128 / rate;
}

std::uint32_t RecordingPeriods(std::uint32_t freeKilobytes, const AudioState& audio,
                               std::uint32_t sampleRate, std::uint32_t channels) {
    if (freeKilobytes <= kLeastFreeKilobytes) return 0;
    return Held(RecordingSeconds(freeKilobytes, audio, sampleRate, channels) *
                audio.PeriodsPerSecond());
}

std::uint32_t MostPeriodsOfFile(std::uint32_t periodBytes) {
    constexpr std::uint32_t kMostBytes = 0xFF000000;
    return kMostBytes / std::max<std::uint32_t>(periodBytes, 1);
}

}  // namespace orma
