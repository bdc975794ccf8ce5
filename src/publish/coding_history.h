#pragma once

#include <cstdint>
#include <string>

namespace orma {

/// What the published file holds, and what it was made from.
struct PublicationFormat {
    bool mp2 = false;  // MPEG-1 Layer II frames, else PCM
    std::uint16_t channels = 1;
    std::uint32_t recordingRate = 44100;  // Hz, of the recordings; the file itself has 48000
    std::uint32_t bitrate = 64000;        // bit/s, of MP2
    std::uint32_t frameBytes = 192;       // of MP2
    unsigned shift = 2;                   // resolution shift
};

/// The coding history (EBU R 98): a line for the recording, a line for the publication, which is
/// always at 48000 Hz. The space before the last line end is part of the text.
[[nodiscard]] std::string CodingHistory(const PublicationFormat& format);

}  // namespace orma
