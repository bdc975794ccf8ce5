#pragma once

#include <vector>

#include "project/clip_list.h"

namespace orma {

/// The clips of a project as its file holds them.
struct StoredClips {
    std::vector<ClipEntry> clips;
    std::int32_t current = -1;  // counted in `clips`
};

/// The list as it is to be stored: the clips shown, and between them those whose recording was
/// missing at load (an unmounted card), as they were read. A missing clip follows the nearest clip
/// before it in the loaded file that is still shown; without one it comes first. `missing` is in
/// the order of the loaded file.
[[nodiscard]] StoredClips WithMissingClips(const ClipList& shown,
                                           const std::vector<ClipEntry>& missing);

}  // namespace orma
