#include "platform/external_recorder.h"

namespace orma {
namespace {

constexpr std::size_t kVersionAt = 6;  // the fourth 16-bit field

}  // namespace

std::array<std::uint8_t, RecorderConfiguration::kBytes> RecorderConfiguration::Encode() const {
    std::array<std::uint8_t, kBytes> bytes{};
    StoreLe(&bytes[0], first);
    StoreLe(&bytes[4], second);
    bytes[8] = third;
    return bytes;
}

RecorderConfiguration RecorderConfiguration::Decode(std::span<const std::uint8_t, kBytes> bytes) {
    return {LoadLe<std::uint32_t>(&bytes[0]), LoadLe<std::uint32_t>(&bytes[4]), bytes[8]};
}

std::array<std::uint8_t, RecorderInformation::kBytes> RecorderInformation::Encode() const {
    std::array<std::uint8_t, kBytes> bytes{};
    StoreLe(&bytes[kVersionAt], version);
    return bytes;
}

RecorderInformation RecorderInformation::Decode(std::span<const std::uint8_t, kBytes> bytes) {
    return {LoadLe<std::uint16_t>(&bytes[kVersionAt])};
}

}  // namespace orma
