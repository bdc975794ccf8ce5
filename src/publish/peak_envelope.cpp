#include "publish/peak_envelope.h"

#include <algorithm>

#include "audio/files/level_tables.h"
#include "base/text.h"

namespace orma {

LevlChunk PeakEnvelope(std::span<const ClipPlan> clips, const DateTime& recorded, unsigned shift) {
    LevlChunk levl;
    levl.blockSize = 9600U >> shift;
    const std::string time =
        Format("%04d:%02d:%02d:%02d:%02d:%02d:%03d", recorded.year, recorded.month, recorded.day,
               recorded.hour, recorded.minute, recorded.second, recorded.millisecond);
    std::ranges::copy(std::string_view(time).substr(0, levl.timestamp.size()),
                      levl.timestamp.begin());
    for (const ClipPlan& clip : clips)
        for (const std::uint8_t level : clip.levels)
            levl.peaks.push_back(Levels().peak[level]);
    const auto largest = std::ranges::max_element(levl.peaks);  // the first of equal ones
    if (largest != levl.peaks.end())
        levl.positionOfPeak = static_cast<std::uint32_t>(largest - levl.peaks.begin());
    return levl;
}

std::uint8_t LargestPeak(const LevlChunk& levl) {
    // Not by the position: that of a file under examination may be anything.
    const auto largest = std::ranges::max_element(levl.peaks);
    return largest == levl.peaks.end() ? std::uint8_t{0} : *largest;
}

}  // namespace orma
