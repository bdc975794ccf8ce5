#pragma once

#include <optional>

#include "audio/files/audio_read.h"
#include "project/clip_entry.h"
#include "project/current_recording.h"

namespace orma {

/// Opens a recording as one of the current format: ends an interrupted rewrite, repairs it, adopts
/// an MP2 take's bit rate, validates and measures it and reads its level file, whose levels the
/// length follows: of an MP2 take the reader states a period less. Without a usable level file the
/// sheet's range is the whole recording and no level is known. Nothing when the recording is
/// refused or its level file is there and cannot be read (reported); then the audio state stays as
/// it was. UI thread.
[[nodiscard]] std::optional<CurrentRecording> ReadRecording(ReaderServices services,
                                                            const Text& audioPath);

/// The net length of a clip in buffer periods: its range (without an own one: the whole
/// recording) less the cuts inside, from the level file, or where that is missing or unusable from
/// the audio file. 0 when the audio cannot be used either. Leaves the audio state as it was.
[[nodiscard]] std::uint32_t ClipLength(ReaderServices services, const ClipEntry& clip,
                                       const Text& audioPath);

/// Channels of the recording at `audioPath` of the current format; 0 when it cannot be read
/// (reported). Leaves the audio state as it was.
[[nodiscard]] std::uint16_t ChannelsOf(ReaderServices services, const Text& audioPath);

}  // namespace orma
