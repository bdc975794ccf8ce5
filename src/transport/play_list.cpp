#include "transport/play_list.h"

#include <algorithm>
#include <limits>

#include "project/recording_access.h"

namespace orma {

PlayList::PlayList(Project& project, std::int32_t first, std::int32_t clips)
    : project_(project),
      next_(std::max(first, 0)),
      end_(std::min(project.Clips().Count(), next_ + std::min(clips, project.Clips().Count()))),
      left_(std::numeric_limits<std::uint32_t>::max()) {}

void PlayList::Trim(std::uint32_t from, std::uint32_t to) {
    skip_ = from;
    left_ = to - std::min(from, to);
}

std::uint16_t PlayList::Channels() const {
    const ReaderServices& readers = project_.Readers();
    std::uint16_t widest = 0;
    for (std::int32_t index = next_; index < end_; ++index) {
        const Text path = project_.ClipAudioPath(project_.Clips().At(index));
        if (readers.files.storage.Exists(path))
            widest = std::max(widest, ChannelsOf(readers, path));
    }
    return widest;
}

std::optional<PeriodRange> PlayList::Next() {
    while (next_ < end_ && left_ > 0) {
        if (!project_.SelectClip(next_++)) continue;
        const CurrentRecording& recording = project_.Recording();
        const bool own = recording.HasSelection();
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
         KeptStretches(project_.Recording().sheet.cuts, clip.begin, clip.end)) {
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
