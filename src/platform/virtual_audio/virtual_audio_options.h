#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"

namespace orma {

enum class Pace {
    kReal,  // as a sound card would, by the monotonic clock; or a number of times faster
    kFast,  // as fast as the program takes and gives buffers
};

/// What stands in for the sound card.
struct VirtualAudioOptions {
    Text inputFile;   // a sound file that is "spoken into the microphone"; empty: no microphone
    Text outputFile;  // a WAV file that receives what is "played"; empty: it is heard by nobody
    Pace pace = Pace::kReal;
    std::uint32_t speed = 1;  // times real time, of Pace::kReal

    /// Sample frames after which the microphone is pulled out, counted from its opening.
    std::optional<std::uint64_t> vanishAfterFrames;

    /// A file of 8 bytes, little-endian, that always holds the sample frames handed to the program
    /// in full buffers, so that others can count what a killed program has lost; empty: none.
    Text countFile;
};

/// Reads `virtual:in=FILE[,out=FILE][,pace=real|fast|SPEED][,vanish=FRAMES][,count=FILE]`; sound
/// comes from a file, goes to one, or both. A comma belongs to a file name unless one of these keys
/// follows it. On failure nothing is returned and `error` tells why, in one UTF-8 sentence.
[[nodiscard]] std::optional<VirtualAudioOptions> ParseVirtualAudio(std::string_view text,
                                                                   std::string& error);

}  // namespace orma
