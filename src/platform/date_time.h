#pragma once

#include <chrono>
#include <cstdint>

namespace orma {

/// A moment of file time or of the clock, UTC.
using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// A calendar date and time in the local zone, as recordings and publications carry it.
struct DateTime {
    std::uint16_t year = 0;
    std::uint16_t month = 0;      // 1..12
    std::uint16_t dayOfWeek = 0;  // 0 = Sunday
    std::uint16_t day = 0;        // 1..31
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t millisecond = 0;

    friend bool operator==(const DateTime&, const DateTime&) = default;
};

}  // namespace orma
