#pragma once

#include "project/project.h"

namespace orma {

/// What the player starts with when it plays the clip list: the range of the first clip, and the
/// channels that the whole list needs, for the output stays open from clip to clip.
struct ClipPlayback {
    std::uint32_t begin = 0;  // buffer periods of the current recording
    std::uint32_t end = 0;
    std::uint16_t channels = 1;
};

/// Prepares playing from the current clip on, or with `single` of that clip alone; nothing without
/// a current clip. Clips that cannot be read count as mono; no box is shown. UI thread.
[[nodiscard]] std::optional<ClipPlayback> PrepareClipPlayback(const Project& project, bool single);

/// The range of the current recording that its current clip plays: the selection, or without one
/// everything.
[[nodiscard]] PeriodRange PlayedRange(const CurrentRecording& recording);

/// Selects the next clip that can be read, for playing to go on at the begin of PlayedRange; false
/// when there is none: the clip that was current stays so. Others are passed over (reported unless
/// their recording is missing). UI thread.
[[nodiscard]] bool NextClip(Project& project);

}  // namespace orma
