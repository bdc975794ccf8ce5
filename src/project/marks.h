#pragma once

#include <cstdint>

#include "project/current_recording.h"
#include "stream/jstream_file.h"

namespace orma {

class Project;

// Marks of the current recording, positions in buffer periods. Every change is in the level file
// when the operation returns true; on false (reported) nothing has changed. UI thread.

/// The index of the mark at exactly `position`, or the count when there is none.
[[nodiscard]] std::size_t FindMark(const LevelSheet& sheet, std::uint32_t position);

/// Inserts a mark in order, behind equal ones; refused when the room for marks is used up.
[[nodiscard]] bool InsertMark(FileServices services, CurrentRecording& recording,
                              std::uint32_t position);

/// Deletes the mark at exactly `position`, which can be undone. Without one there nothing is done,
/// which is a success.
[[nodiscard]] bool DeleteMark(FileServices services, CurrentRecording& recording,
                              std::uint32_t position);

/// Deletes the mark at the cursor, or sets one there.
[[nodiscard]] bool ToggleMark(FileServices services, CurrentRecording& recording);

/// The same in the current recording, whose levels are measured first when they are missing.
[[nodiscard]] bool ToggleMark(Project& project);

}  // namespace orma
