#pragma once

#include "platform/clock.h"

namespace orma::test {

/// A clock that stands still until a test moves it; its local zone is UTC.
class FakeClock : public Clock {
  public:
    [[nodiscard]] std::uint32_t Ticks() override { return ticks; }
    void Sleep(std::uint32_t milliseconds) override { ticks += milliseconds; }
    [[nodiscard]] FileTime Now() override { return now; }
    [[nodiscard]] DateTime ToLocal(FileTime moment) override;

    std::uint32_t ticks = 0;
    FileTime now{};
};

}  // namespace orma::test
