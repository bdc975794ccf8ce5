#include "support/fake_clock.h"

namespace orma::test {

DateTime FakeClock::ToLocal(FileTime moment) {
    const auto days = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(days);
    const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::milliseconds>(moment - days));
    const auto field = [](auto value) { return static_cast<std::uint16_t>(value); };
    return {field(static_cast<int>(date.year())),
            field(static_cast<unsigned>(date.month())),
            field(std::chrono::weekday(days).c_encoding()),
            field(static_cast<unsigned>(date.day())),
            field(time.hours().count()),
            field(time.minutes().count()),
            field(time.seconds().count()),
            field(time.subseconds().count())};
}

}  // namespace orma::test
