#pragma once

#include <cstdint>
#include <string>

namespace orma::cli {

/// One line of a running take for a terminal: state, elapsed and remaining time, a level bar and
/// the number of marks. `level` is a level byte (0 full scale, 79 quiet).
[[nodiscard]] std::string LevelLine(bool saving, std::uint32_t savedPeriods,
                                    std::uint32_t periodsLeft, std::uint32_t periodsPerSecond,
                                    std::uint8_t level, std::size_t marks);

/// The same of a recording that is played: its name, the place, its length and the level there.
[[nodiscard]] std::string PlayLine(const std::string& name, std::uint32_t heard,
                                   std::uint32_t length, std::uint32_t periodsPerSecond,
                                   std::uint8_t level);

}  // namespace orma::cli
