#pragma once

#include <cstdint>

#include "project/project.h"

namespace orma {

/// Buffer periods that playing the selection takes, or without one the whole recording: its length
/// less the cuts inside.
[[nodiscard]] std::uint32_t PlayingLength(const CurrentRecording& recording);

/// Reads the current clip's length and texts anew, after its range or the cuts changed.
void RefreshClipLength(Project& project);

/// Moves the begin of the selection to the cursor; behind its end, the end becomes the recording's.
/// The clip that is edited takes on the new bounds and the project is saved; no sound file changes.
/// False when it could not be saved (reported); the selection stays all the same. UI thread.
[[nodiscard]] bool CropBegin(Project& project);

/// Moves the end of the selection to the cursor; before its begin, the begin becomes 0. Otherwise
/// as CropBegin.
[[nodiscard]] bool CropEnd(Project& project);

/// The recording of the current sheet gets a level file when it has none, measured from the sound,
/// with the marks that an interruption left: what marks, cuts and saved selections need. False
/// when it cannot be (reported). UI thread.
[[nodiscard]] bool EnsureLevels(Project& project);

}  // namespace orma
