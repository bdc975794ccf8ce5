#pragma once

#include <cstdint>
#include <optional>

#include "audio/files/audio_read.h"

namespace orma {

/// Where the buffer periods of a recording lie in its file.
struct TakeLayout {
    AudioFileFormat format;
    bool mp2 = false;
    unsigned shift = 2;
    std::uint32_t frameBytes = 0;  // MP2
    std::uint64_t fileBytes = 0;

    /// Bytes of sound in front of a period, counted from the data offset. Of MP2 those of whole
    /// frames, rounded down.
    [[nodiscard]] std::uint64_t SoundBefore(std::uint32_t period) const;

    /// Bytes of sound of [begin, end).
    [[nodiscard]] std::uint64_t SoundBytes(std::uint32_t begin, std::uint32_t end) const {
        return SoundBefore(end) - SoundBefore(begin);
    }

    /// The size of the file once it is cut in place at `end`: the sound without the 44 bytes of a
    /// WAV header, so that the header then counts 44 bytes more than there are. Deliberate: it is
    /// how such takes have always been cut, and RepairTake mends the header.
    [[nodiscard]] std::uint64_t CutSize(std::uint32_t end) const;

    /// True when the file can be cut in place: nothing but one of our headers stands in front of
    /// the sound, and nothing behind it.
    [[nodiscard]] bool CanBeCutInPlace() const;

    /// True when a reader takes `soundBytes` of this format for a recording: a WAV file needs a
    /// whole period, an MP2 file two.
    [[nodiscard]] bool IsReadable(std::uint64_t soundBytes) const;
};

/// Measures a recording as one of the current format, an MP2 file by its own bit rate; nothing when
/// it is refused (reported). Leaves the audio state as it was. UI thread.
[[nodiscard]] std::optional<TakeLayout> ReadTakeLayout(ReaderServices services,
                                                       const Text& audioPath);

}  // namespace orma
