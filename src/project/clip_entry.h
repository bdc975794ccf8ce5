#pragma once

#include <cstdint>

#include "base/text.h"
#include "platform/date_time.h"

namespace orma {

/// A named piece of a recording. Positions and lengths in buffer periods.
struct ClipEntry {
    Text name;    // the recording's base name, without folder and extension
    Text folder;  // of the recording, with its separator
    Text title;   // what the user typed; empty: the name stands for it
    std::uint32_t begin = 0;
    std::uint32_t end = 0;       // 0: the whole recording
    std::uint32_t reserved = 0;  // carried unchanged

    // The clip's place in the project file it was loaded from, counted from 1; 0: added since. It
    // tells where clips that could not be shown belong. Not stored.
    std::uint32_t place = 0;

    // Derived by the clip check and the clip texts; not stored.
    DateTime fileTime;                // the recording file's last-write time, local
    std::uint32_t length = 0;         // net of cuts; 0: the recording is missing
    std::uint32_t lengthSeconds = 0;  // length / periods a second
    Text lengthText;                  // "%2d:%02d" minutes, seconds
    Text timeDateText;                // "%2d:%02d %2d/%02d/%04d"
    Text location;                    // folder and name
    Text description;                 // by the description mode

    /// What a list or a cue line calls the clip.
    [[nodiscard]] const Text& ShownName() const { return title.empty() ? name : title; }

    /// Folder and name; the files add ".wav" or ".mp2" and ".jvu".
    [[nodiscard]] Text BasePath() const { return folder + name; }
};

}  // namespace orma
