#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orma {

/// A stretch that editing has removed, in buffer periods [begin, end).
struct RemovedRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint32_t third = 0;  // carried unchanged

    friend bool operator==(const RemovedRange&, const RemovedRange&) = default;
};

/// What is known of a recording beside its sound: the content of its level file, and the state of
/// the current recording while it is recorded and edited. All positions in buffer periods.
struct LevelSheet {
    static constexpr std::size_t kMaxMarks = 1003;
    static constexpr std::size_t kMaxCuts = 100;

    std::uint32_t rangeStart = 0;
    std::uint32_t rangeEnd = 0;        // exclusive
    std::vector<std::uint32_t> marks;  // ascending
    std::vector<RemovedRange> cuts;    // ascending by begin
    std::vector<std::uint8_t> levels;  // one level byte a period; empty: no level known yet
    unsigned resolutionShift = 2;

    /// Empties it in place, so that the memory that a take was promised stays.
    void Clear(unsigned shift);

    friend bool operator==(const LevelSheet&, const LevelSheet&) = default;
};

/// Inserts `value` before the first mark greater than it; equal marks stay in front.
void InsertSorted(std::vector<std::uint32_t>& marks, std::uint32_t value);

/// A stretch of buffer periods [begin, end).
struct PeriodRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    friend bool operator==(const PeriodRange&, const PeriodRange&) = default;
};

/// What the cuts leave of [begin, end), ascending; empty stretches are left out. The cuts may stand
/// in any order, touch, overlap or lie inside each other: what any of them covers is gone.
[[nodiscard]] std::vector<PeriodRange> KeptStretches(const std::vector<RemovedRange>& cuts,
                                                     std::uint32_t begin, std::uint32_t end);

/// Periods of [begin, end) that no cut covers.
[[nodiscard]] std::uint32_t NetLength(const std::vector<RemovedRange>& cuts, std::uint32_t begin,
                                      std::uint32_t end);

}  // namespace orma
