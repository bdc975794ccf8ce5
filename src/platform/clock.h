#pragma once

#include <cstdint>

#include "platform/date_time.h"

namespace orma {

/// The system's clocks. UI thread; never fails.
class Clock {
  public:
    virtual ~Clock() = default;

    /// Milliseconds of a counter that only rises and wraps after 2^32; its start is arbitrary.
    [[nodiscard]] virtual std::uint32_t Ticks() = 0;

    /// Blocks for that long, for a job that waits without the event loop.
    virtual void Sleep(std::uint32_t milliseconds) = 0;

    /// The present moment.
    [[nodiscard]] virtual FileTime Now() = 0;

    /// The moment in the local time zone.
    [[nodiscard]] virtual DateTime ToLocal(FileTime moment) = 0;
};

}  // namespace orma
