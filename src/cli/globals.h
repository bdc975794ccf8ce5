#pragma once

#include <string>

#include "base/text.h"

namespace orma::cli {

/// Options that every command takes.
struct Globals {
    std::string home;                 // program folder; empty: found by the usual rule
    std::string audio = "portaudio";  // or virtual:in=FILE[,out=FILE][,pace=real|fast]
    std::string trace;                // file that takes the trace lines; empty: none
    bool json = false;
};

/// How a command ended, as the shell sees it.
enum ExitCode { kOk = 0, kFailed = 1, kUsage = 2 };

/// A path as the caller typed it, made absolute against the caller's folder.
[[nodiscard]] Text CallerPath(const std::string& path);

}  // namespace orma::cli
