#pragma once

#include <cstdint>

#include "stream/jstream_file.h"

namespace orma {

/// The fields of a `fmt ` chunk that the readers use; all zero when the file has none.
struct WaveFormatFields {
    std::uint16_t tag = 0;  // of WAVE_FORMAT_EXTENSIBLE: its sub-format's
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;  // Hz
    std::uint16_t bitsPerSample = 0;
};

/// What the walk through a RIFF file's chunks found.
struct RiffContent {
    WaveFormatFields format;
    std::uint32_t dataOffset = 0;  // bytes from the file's start; 0 when there is no `data`
    std::uint32_t dataLength = 0;  // as the file says: not yet compared with its size
};

/// Walks an open file's chunks from its start up to `data`, traces and skips those it does not
/// know (with the pad byte of odd ones), and leaves the position undefined. Lengths are compared
/// with the file's size before anything relies on them; the walk ends at the file's end and after
/// 4096 chunks, so that a file of zeros does not keep the program.
[[nodiscard]] RiffContent WalkRiff(JStreamFile& file);

}  // namespace orma
