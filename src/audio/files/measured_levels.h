#pragma once

#include <cstdint>
#include <vector>

#include "audio/files/audio_read.h"

namespace orma {

/// The level bytes of a recording that has no level file: the peak of each of its first `periods`
/// buffer periods through the level table, as the recorder reckons them, also of 24-bit sound.
/// `reader` has measured its file; it is closed afterwards only by a failure (reported by the
/// stream). UI thread.
[[nodiscard]] std::vector<std::uint8_t> MeasuredLevels(JStreamAudioReadFile& reader,
                                                       std::uint32_t periods, unsigned shift);

}  // namespace orma
