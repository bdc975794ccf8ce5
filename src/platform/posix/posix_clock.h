#pragma once

#include "platform/clock.h"

namespace orma {

/// The monotonic and the calendar clock of a POSIX system.
class PosixClock : public Clock {
  public:
    [[nodiscard]] std::uint32_t Ticks() override;
    void Sleep(std::uint32_t milliseconds) override;
    [[nodiscard]] FileTime Now() override;
    [[nodiscard]] DateTime ToLocal(FileTime moment) override;
};

}  // namespace orma
