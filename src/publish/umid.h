#pragma once

#include <array>
#include <cstdint>

#include "platform/date_time.h"

namespace orma {

/// Who made the material: three codes of four bytes, copied into the identifier as they stand.
struct OriginatorCodes {
    std::uint32_t country = 0;
    std::uint32_t organisation = 0;
    std::uint32_t user = 0;
};

/// Days since 17 November 1858 (15 January 2009 is 54846), by the Gregorian calendar formula with
/// truncating arithmetic.
[[nodiscard]] std::uint32_t ModifiedJulianDay(const DateTime& date);

/// Samples since midnight, always counted at 48000 Hz whatever the recording's rate.
[[nodiscard]] std::uint32_t TimeReference(const DateTime& time);

/// Turns the label that stands in `umid` into an extended unique material identifier
/// (SMPTE ST 330): material type by channels, time, date as Modified Julian Day in BCD, the low
/// bytes of the tick counter (milliseconds) for uniqueness, and the originator.
void FillUmid(std::array<std::uint8_t, 64>& umid, std::uint16_t channels, const DateTime& recorded,
              std::uint32_t ticks, const OriginatorCodes& codes);

}  // namespace orma
