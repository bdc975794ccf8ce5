#include "audio/files/level_sheet.h"

#include <algorithm>

namespace orma {

void LevelSheet::Clear(unsigned shift) {
    rangeStart = 0;
    rangeEnd = 0;
    marks.clear();
    cuts.clear();
    levels.clear();
    resolutionShift = shift;
}

void InsertSorted(std::vector<std::uint32_t>& marks, std::uint32_t value) {
    marks.insert(std::upper_bound(marks.begin(), marks.end(), value), value);
}

std::vector<PeriodRange> KeptStretches(const std::vector<RemovedRange>& cuts, std::uint32_t begin,
                                       std::uint32_t end) {
    std::vector<RemovedRange> sorted = cuts;
    std::ranges::sort(sorted, {}, &RemovedRange::begin);
    std::vector<PeriodRange> kept;
    std::uint32_t position = begin;
    for (const RemovedRange& cut : sorted) {
        if (cut.begin >= cut.end) continue;
        const std::uint32_t stop = std::min(cut.begin, end);
        if (stop > position) kept.push_back({position, stop});
        position = std::max(position, cut.end);
    }
    if (position < end) kept.push_back({position, end});
    return kept;
}

std::uint32_t NetLength(const std::vector<RemovedRange>& cuts, std::uint32_t begin,
                        std::uint32_t end) {
    std::uint32_t periods = 0;
    for (const PeriodRange& stretch : KeptStretches(cuts, begin, end))
        periods += stretch.end - stretch.begin;
    return periods;
}

}  // namespace orma
