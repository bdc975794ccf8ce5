#pragma once

#include <cstdint>

#include "project/clip_entry.h"

namespace orma {

/// Recomputes the texts of a clip from its other fields. `descriptionMode` 0..3 as the settings
/// have it.
void UpdateClipTexts(ClipEntry& clip, std::uint32_t descriptionMode);

/// The label of a recording in lists, by the list-display setting.
[[nodiscard]] Text RecordingLabel(const ClipEntry& clip, std::uint32_t listDisplay);

/// "%2d:%02ds.%02d" of a length in buffer periods: minutes, seconds, hundredths.
[[nodiscard]] Text TotalLengthText(std::uint32_t periods, std::uint32_t periodsPerSecond);

}  // namespace orma
