#pragma once

#include <algorithm>

#include "fuzz/fuzz.h"
#include "project/project.h"
#include "support/fake_clock.h"

namespace orma::test {

/// A project without anything in it.
struct ProjectDesk {
    explicit ProjectDesk(FuzzFiles& files)
        : decoder(audio, files.storage, u""),
          project({{files.services, audio, decoder}, clock, clips, recording}) {}

    FakeClock clock;
    AudioState audio;
    Mp2Decoder decoder;
    ClipList clips;
    CurrentRecording recording;
    Project project;
};

/// Frames of silence: a header of MPEG Layer II and nothing behind it.
inline Bytes SilentFrames(std::size_t frames, std::size_t bytes,
                          const std::array<std::uint8_t, 4>& header) {
    Bytes file(frames * bytes);
    for (std::size_t at = 0; at < file.size(); at += bytes)
        std::ranges::copy(header, file.begin() + static_cast<std::ptrdiff_t>(at));
    return file;
}

}  // namespace orma::test
