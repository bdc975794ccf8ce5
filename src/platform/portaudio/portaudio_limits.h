#pragma once

#include <chrono>
#include <cstdint>

namespace orma {

/// How long the adapter waits for others.
struct PortAudioLimits {
    std::chrono::milliseconds call{2000};       // for the library to open, start or list
    std::chrono::milliseconds firstData{5000};  // from the start to the first callback
    std::chrono::milliseconds nextData{3000};   // between two callbacks
    std::uint32_t ringSeconds = 11;             // of sound behind the queued input buffers
};

}  // namespace orma
