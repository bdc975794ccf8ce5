#include "platform/spdif_card.h"

#include <algorithm>

namespace orma {
namespace {

struct Rate {
    std::uint32_t hz;
    std::uint8_t code;
};
constexpr std::array<Rate, 7> kRates{
    {{44100, 0}, {48000, 2}, {32000, 3}, {88200, 8}, {96000, 10}, {176400, 12}, {192000, 14}}};
constexpr std::uint8_t kNotIndicated = 1;

}  // namespace

std::uint32_t SpdifRateOfCode(std::uint8_t code) {
    const auto row = std::ranges::find(kRates, code, &Rate::code);
    return row == kRates.end() ? 0 : row->hz;
}

std::uint8_t SpdifCodeOfRate(std::uint32_t hz) {
    const auto row = std::ranges::find(kRates, hz, &Rate::hz);
    return row == kRates.end() ? kNotIndicated : row->code;
}

std::array<std::uint8_t, SpdifRingBlock::kBytes> SpdifRingBlock::Encode() const {
    std::array<std::uint8_t, kBytes> bytes{};
    StoreLe(&bytes[0], writePosition);
    StoreLe(&bytes[4], size);
    StoreLe(&bytes[8], readPosition);
    return bytes;
}

SpdifRingBlock SpdifRingBlock::Decode(std::span<const std::uint8_t, kBytes> bytes) {
    return {LoadLe<std::uint32_t>(&bytes[0]), LoadLe<std::uint32_t>(&bytes[4]),
            LoadLe<std::uint32_t>(&bytes[8])};
}

}  // namespace orma
