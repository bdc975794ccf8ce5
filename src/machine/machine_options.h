#pragma once

#include <string>

#include "base/text.h"

namespace orma {

/// The sound system unless --audio chooses another.
inline constexpr const char* kDefaultAudio = "portaudio";

/// The options by which a caller of either front end chooses the machine that the program sees.
struct MachineOptions {
    std::string home;                   // program folder; empty: found by the usual rule
    std::string audio = kDefaultAudio;  // or virtual:in=FILE[,out=FILE][,pace=real|fast]
    std::string hardware = "alsa";      // or alsa:card=PCM, simulated:recorder=FILE,card=FILE, none
    std::string trace;                  // file that takes the trace lines; empty: none
};

/// A path as the caller typed it, made absolute against the caller's folder.
[[nodiscard]] Text CallerPath(const std::string& path);

}  // namespace orma
