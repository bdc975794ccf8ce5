#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/files/level_sheet.h"

namespace orma {

/// The one new cut, deletion or edge change that can be taken back. Positions in buffer periods.
struct UndoRecord {
    static constexpr std::uint32_t kMarkDeleted = 1;
    static constexpr std::uint32_t kCutMade = 2;
    static constexpr std::uint32_t kCutDeleted = 10;
    static constexpr std::uint32_t kCutBeginChanged = 11;
    static constexpr std::uint32_t kCutEndChanged = 12;
    static constexpr std::uint32_t kNothing = 13;  // and above

    std::uint32_t kind = kNothing;
    std::uint32_t step = 0;   // 0: can be undone; 1: was undone and can be done again
    std::size_t index = 0;    // of the cut
    std::uint32_t value = 0;  // the deleted mark; of an edge, the position it had
    RemovedRange cut;         // the deleted cut, whole
};

}  // namespace orma
