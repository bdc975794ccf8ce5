#pragma once

#include <cstdint>

#include "project/current_recording.h"
#include "stream/jstream_file.h"

namespace orma {

/// The index of the mark at exactly `position` (buffer periods), or the count when there is none.
[[nodiscard]] std::size_t FindMark(const LevelSheet& sheet, std::uint32_t position);

/// Inserts a mark in order and rewrites the level file; false (nothing changes) when the room for
/// marks is used up or the file cannot be written (reported).
[[nodiscard]] bool InsertMark(FileServices services, CurrentRecording& recording,
                              std::uint32_t position);

}  // namespace orma
