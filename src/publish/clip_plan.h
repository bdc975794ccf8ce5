#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/files/audio_read.h"
#include "audio/files/level_sheet.h"
#include "project/clip_entry.h"
#include "project/current_recording.h"

namespace orma {

/// How much sound a recording's file holds.
struct StoredSound {
    std::uint32_t length = 0;   // buffer periods, as the editor knows it
    std::uint32_t periods = 0;  // whole buffer periods stored
    std::uint32_t frames = 0;   // whole MP2 frames stored; 0 for WAV
    std::uint32_t samples = 0;  // stored, per channel; 0 for MP2
    std::uint32_t samplesPerPeriod = 0;
};

/// Stored MP2 frames [first, last).
struct FrameRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;

    friend bool operator==(const FrameRange&, const FrameRange&) = default;
};

/// One clip as a publication sends it. Positions and lengths in buffer periods of its recording.
struct ClipPlan {
    std::string title;  // Windows-1252, without control characters
    Text audioPath;
    std::uint32_t sampleRate = 44100;  // Hz, of the file
    std::uint16_t channels = 1;

    std::uint32_t begin = 0;  // the range before cuts, end exclusive
    std::uint32_t end = 0;
    std::vector<RemovedRange> cuts;    // of the recording, ascending
    std::vector<std::uint32_t> marks;  // of the recording, ascending

    std::vector<PeriodRange> kept;     // the range less its cuts
    bool takesTail = false;            // also what is stored behind the last kept period
    std::vector<FrameRange> frames;    // MP2: the frames of each kept stretch
    std::uint64_t samples = 0;         // WAV: what is sent, per channel
    std::vector<std::uint8_t> levels;  // a level byte for each kept period

    [[nodiscard]] std::uint32_t NetLength() const {
        return static_cast<std::uint32_t>(levels.size());
    }
    [[nodiscard]] std::uint32_t FrameCount() const;
};

/// The audio file of a clip of an MP2 or a WAV project.
[[nodiscard]] Text ClipAudioPath(const ClipEntry& clip, bool mp2);

/// A clip's title or name in 8 bits; control characters, which would break the line format of the
/// quality report, become spaces.
[[nodiscard]] std::string CueTitle(const ClipEntry& clip);

/// Lays out what a clip sends. Its range is its own begin and end when the end is set, else the
/// whole recording, and never more than the recording. A range that reaches the recording's end
/// takes everything stored behind it too (less than a period of PCM, the encoder's last frames), so
/// that no recorded sample is lost. `sheet.levels` holds a level for each period of the recording.
/// `clip` gives names and range.
[[nodiscard]] ClipPlan PlanClip(const ClipEntry& clip, const LevelSheet& sheet,
                                const StoredSound& sound, unsigned shift);

/// True when `levels` were taken from this sound: at its resolution, and not shorter than it by
/// more than a period, the last one of which may be cut short.
[[nodiscard]] bool LevelsCover(const LevelSheet& sheet, const StoredSound& sound, unsigned shift);

/// True when the file lacks sound that its levels speak of, by more than the period or the few
/// frames that cutting and rounding may cost.
[[nodiscard]] bool EndsEarly(const LevelSheet& sheet, const StoredSound& sound, unsigned shift);

/// Reads what a clip needs from its recording: validates the sound, takes marks, cuts and levels
/// from the current recording when it is that one, else from the level file; a recording without
/// levels is measured. Nothing, with the reason reported, when the recording or its level file
/// cannot be read: without its cuts, what the user has removed would be heard. Sets the sample rate
/// and the bits per sample of the audio state. UI thread.
[[nodiscard]] std::optional<ClipPlan> ReadClipPlan(ReaderServices services, const ClipEntry& clip,
                                                   const CurrentRecording& current);

}  // namespace orma
