#pragma once

#include <cstdint>
#include <optional>

#include "project/current_recording.h"

namespace orma {

// Where the mark buttons go from `position` (buffer periods): the nearest mark, edge of the
// selection, or end of the recording, on that side; nothing when there is none.

[[nodiscard]] std::optional<std::uint32_t> PlaceBefore(const CurrentRecording& recording,
                                                       std::uint32_t position);
[[nodiscard]] std::optional<std::uint32_t> PlaceBehind(const CurrentRecording& recording,
                                                       std::uint32_t position);

}  // namespace orma
