#include "project/missing_clips.h"

#include <algorithm>
#include <utility>

namespace orma {

StoredClips WithMissingClips(const ClipList& shown, const std::vector<ClipEntry>& missing) {
    // Places of the loaded clips that are left, with the index where each stands now.
    std::vector<std::pair<std::uint32_t, std::int32_t>> anchors;
    for (std::int32_t i = 0; i < shown.Count(); ++i) {
        if (shown.At(i).place != 0) anchors.emplace_back(shown.At(i).place, i);
    }
    std::ranges::sort(anchors);

    std::vector<std::vector<const ClipEntry*>> followers(static_cast<std::size_t>(shown.Count()) +
                                                         1);
    for (const ClipEntry& clip : missing) {
        const auto after = std::ranges::upper_bound(anchors, std::pair(clip.place, 0));
        // Slot 0 holds what stands before the first shown clip.
        const std::int32_t slot = after == anchors.begin() ? 0 : std::prev(after)->second + 1;
        followers[static_cast<std::size_t>(slot)].push_back(&clip);
    }

    StoredClips all;
    all.clips.reserve(static_cast<std::size_t>(shown.Count()) + missing.size());
    for (std::int32_t slot = 0; slot <= shown.Count(); ++slot) {
        if (slot > 0) {
            if (slot - 1 == shown.CurrentIndex())
                all.current = static_cast<std::int32_t>(all.clips.size());
            all.clips.push_back(shown.At(slot - 1));
        }
        for (const ClipEntry* clip : followers[static_cast<std::size_t>(slot)])
            all.clips.push_back(*clip);
    }
    return all;
}

}  // namespace orma
