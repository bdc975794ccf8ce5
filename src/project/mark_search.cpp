#include "project/mark_search.h"

#include <algorithm>
#include <vector>

namespace orma {
namespace {

/// Ascending. A mark behind the end of a recording that was cut short is out of reach.
std::vector<std::uint32_t> Places(const CurrentRecording& recording) {
    std::vector<std::uint32_t> places = recording.sheet.marks;
    places.insert(places.end(), {0, recording.length});
    if (recording.HasSelection())
        places.insert(places.end(), {recording.selectionStart, recording.selectionEnd});
    std::erase_if(places, [&](std::uint32_t place) { return place > recording.length; });
    std::ranges::sort(places);
    return places;
}

}  // namespace

std::optional<std::uint32_t> PlaceBefore(const CurrentRecording& recording,
                                         std::uint32_t position) {
    const std::vector<std::uint32_t> places = Places(recording);
    const auto behind = std::ranges::lower_bound(places, position);
    if (behind == places.begin()) return std::nullopt;
    return *(behind - 1);
}

std::optional<std::uint32_t> PlaceBehind(const CurrentRecording& recording,
                                         std::uint32_t position) {
    const std::vector<std::uint32_t> places = Places(recording);
    const auto behind = std::ranges::upper_bound(places, position);
    if (behind == places.end()) return std::nullopt;
    return *behind;
}

}  // namespace orma
