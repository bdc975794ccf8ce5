#pragma once

#include "platform/clock.h"

namespace orma::test {

/// A clock that stands still until a test moves it; its local zone is UTC.
class FakeClock : public Clock {
  public:
    [[nodiscard]] std::uint32_t Ticks() override { return ticks; }
    void Sleep(std::uint32_t milliseconds) override { ticks += milliseconds; }
    [[nodiscard]] FileTime Now() override { return now; }
    [[nodiscard]] DateTime ToLocal(FileTime moment) override {
        const auto days = std::chrono::floor<std::chrono::days>(moment);
        const std::chrono::year_month_day date(days);
        const std::chrono::hh_mm_ss time(
            std::chrono::floor<std::chrono::milliseconds>(moment - days));
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

    std::uint32_t ticks = 0;
    FileTime now{};
};

}  // namespace orma::test
