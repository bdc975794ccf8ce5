#pragma once

#include <stdexcept>
#include <string>

#include "base/text.h"

namespace orma::cli {

/// The sound system unless --audio chooses another.
inline constexpr const char* kDefaultAudio = "portaudio";

/// Options that every command takes.
struct Globals {
    std::string home;                   // program folder; empty: found by the usual rule
    std::string audio = kDefaultAudio;  // or virtual:in=FILE[,out=FILE][,pace=real|fast]
    std::string hardware = "alsa";      // or alsa:card=PCM, simulated:recorder=FILE,card=FILE, none
    std::string trace;                  // file that takes the trace lines; empty: none
    bool json = false;
};

/// How a command ended, as the shell sees it.
enum ExitCode { kOk = 0, kFailed = 1, kUsage = 2 };

/// Wrong usage, found after the command line was parsed; main prints it and exits with 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A path as the caller typed it, made absolute against the caller's folder.
[[nodiscard]] Text CallerPath(const std::string& path);

}  // namespace orma::cli
