#include "publish/umid.h"

#include "base/bytes.h"

namespace orma {

std::uint32_t ModifiedJulianDay(const DateTime& date) {
    std::int32_t year = date.year;
    std::int32_t month = date.month;
    if (month < 3) {
        --year;
        month += 12;
    }
    const std::int32_t century = year / 100;
    const std::int32_t leap = 2 - century + century / 4;
    // 365.25 days a year and 30.6001 days a month, in whole numbers.
    const std::int32_t days = year * 1461 / 4 + (month + 1) * 306001 / 10000 + leap + date.day;
    return static_cast<std::uint32_t>(days - 679006);
}

std::uint32_t TimeReference(const DateTime& time) {
    return (time.hour * 3600U + time.minute * 60U + time.second) * 48000U;
}

void FillUmid(std::array<std::uint8_t, 64>& umid, std::uint16_t channels, const DateTime& recorded,
              std::uint32_t ticks, const OriginatorCodes& codes) {
    umid[10] = channels == 2 ? 9 : 8;
    umid[12] = 0x33;
    StoreLe(&umid[16], TimeReference(recorded));
    std::uint32_t day = ModifiedJulianDay(recorded);
    for (std::size_t i = 20; i < 23; ++i) {  // two decimal digits a byte, the last two first
        umid[i] = static_cast<std::uint8_t>(day / 10 % 10 << 4 | day % 10);
        day /= 100;
    }
    umid[23] = 0x80;
    umid[24] = static_cast<std::uint8_t>(ticks);
    umid[25] = static_cast<std::uint8_t>(ticks >> 8);
    StoreLe(&umid[52], codes.country);
    StoreLe(&umid[56], codes.organisation);
    StoreLe(&umid[60], codes.user);
}

}  // namespace orma
