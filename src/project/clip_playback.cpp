#include "project/clip_playback.h"

#include <algorithm>

#include "project/silent_boxes.h"
#include "project/take_layout.h"

namespace orma {

std::optional<ClipPlayback> PrepareClipPlayback(const Project& project, bool single) {
    const ClipList& clips = project.Clips();
    const std::int32_t first = clips.CurrentIndex();
    if (first < 0 || first >= clips.Count()) return std::nullopt;
    SilentBoxes boxes;
    const ReaderServices& readers = project.Readers();
    ErrorReporter report(boxes, readers.files.storage);
    const PeriodRange range = PlayedRange(project.Recording());
    ClipPlayback playback{range.begin, range.end, 1};
    const std::int32_t last = single ? first + 1 : clips.Count();
    for (std::int32_t i = first; i < last; ++i) {
        const auto layout =
            ReadTakeLayout({{readers.files.storage, report}, readers.audio, readers.decoder},
                           project.ClipAudioPath(clips.At(i)));
        if (layout) playback.channels = std::max(playback.channels, layout->format.channels);
    }
    return playback;
}

PeriodRange PlayedRange(const CurrentRecording& recording) {
    if (recording.selectionStart < recording.selectionEnd)
        return {recording.selectionStart, recording.selectionEnd};
    return {0, recording.length};
}

bool NextClip(Project& project) {
    for (std::int32_t i = project.Clips().CurrentIndex() + 1; i < project.Clips().Count(); ++i) {
        if (project.SelectClip(i)) return true;
    }
    return false;
}

}  // namespace orma
