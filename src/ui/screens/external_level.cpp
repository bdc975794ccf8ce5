#include "ui/screens/external_level.h"

#include <algorithm>

#include "audio/files/level_tables.h"

namespace orma {

std::optional<std::uint8_t> ExternalLevel::Read(ExternalRecorderControl& recorder, bool stereo) {
    const auto value = recorder.QueryValue();
    if (!value) return std::nullopt;
    const std::uint32_t upper = *value >> 16;
    const std::uint32_t level = stereo ? std::max(upper, *value & 0xFFFFU) : upper;
    shown_ = level >= shown_ ? level : shown_ - (shown_ - level) / 8;
    return LevelOfPeak(shown_);
}

}  // namespace orma
