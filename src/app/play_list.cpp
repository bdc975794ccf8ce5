#include "app/play_list.h"

#include <algorithm>
#include <limits>

#include "project/recording_access.h"

namespace orma {

PlayList::PlayList(Application& app, std::int32_t first, std::int32_t clips)
    : app_(app),
      next_(std::max(first, 0)),
      end_(std::min(app.clips.Count(), next_ + std::min(clips, app.clips.Count()))),
      left_(std::numeric_limits<std::uint32_t>::max()) {}

void PlayList::Trim(std::uint32_t from, std::uint32_t to) {
    skip_ = from;
    left_ = to - std::min(from, to);
}

std::uint16_t PlayList::Channels() const {
    const ReaderServices readers{app_.files, app_.audio, app_.decoder};
    std::uint16_t widest = 0;
    for (std::int32_t index = next_; index < end_; ++index) {
        const Text path = app_.project.ClipAudioPath(app_.clips.At(index));
        if (app_.ports.storage.Exists(path)) widest = std::max(widest, ChannelsOf(readers, path));
    }
    return widest;
}

std::optional<PeriodRange> PlayList::Next() {
    while (next_ < end_ && left_ > 0) {
        if (!app_.project.SelectClip(next_++)) continue;
        const CurrentRecording& recording = app_.recording;
        const bool own = recording.selectionStart < recording.selectionEnd;
        const PeriodRange range =
            Trimmed(own ? PeriodRange{recording.selectionStart, recording.selectionEnd}
                        : PeriodRange{0, recording.length});
        if (range.begin >= range.end) continue;
        ++played_;
        return range;
    }
    return std::nullopt;
}

PeriodRange PlayList::Trimmed(PeriodRange clip) {
    PeriodRange heard;
    for (const PeriodRange& stretch :
         KeptStretches(app_.recording.sheet.cuts, clip.begin, clip.end)) {
        const std::uint32_t length = stretch.end - stretch.begin;
        const std::uint32_t skipped = std::min(skip_, length);
        const std::uint32_t taken = std::min(left_, length - skipped);
        skip_ -= skipped;
        left_ -= taken;
        if (taken == 0) continue;
        if (heard.end == 0) heard.begin = stretch.begin + skipped;
        heard.end = stretch.begin + skipped + taken;
    }
    return heard;
}

}  // namespace orma
