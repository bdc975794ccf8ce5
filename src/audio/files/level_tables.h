#pragma once

#include <array>
#include <cstdint>

namespace orma {

/// A level byte: 0 is full scale, 79 is -49 dBFS or quieter.
inline constexpr std::uint8_t kQuietLevel = 79;

/// The level byte of a strip that knows no level yet.
inline constexpr std::uint8_t kNoLevel = 80;

/// Both level tables, built in one pass.
struct LevelTables {
    std::array<std::uint8_t, 512> level{};  // peak >> 6 to level byte
    std::array<std::uint8_t, 256> peak{};   // level byte to the largest linear peak 0..255
};

/// The tables of the system: three level steps a dB down to -10 dBFS, one and a half down to
/// -30 dBFS, one down to -49 dBFS. Any thread.
[[nodiscard]] const LevelTables& Levels();

/// The level byte of a peak 0..32768; an index above the table's end counts as its last.
[[nodiscard]] std::uint8_t LevelOfPeak(std::uint32_t peak);

}  // namespace orma
