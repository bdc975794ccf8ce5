#pragma once

#include <array>
#include <cstdint>

namespace orma {

/// How close the processing of buffers comes to the buffer period while saving: a log of the first
/// processing times and the peak of their running average. No allocation; UI thread.
class LoadMeter {
  public:
    /// Starts over, as while nothing is saved.
    void Clear();

    /// Notes that one buffer took `milliseconds`. The first one of a recording does not enter the
    /// average, and averages of the first two seconds do not count as peaks: opening a file is not
    /// the load that matters.
    void Note(std::uint32_t milliseconds, std::uint32_t periodsPerSecond);

    /// The largest average of sixteen, milliseconds.
    [[nodiscard]] std::uint32_t PeakMs() const { return peak_; }

    /// Traces the log, one line "pload[index]=milliseconds" an entry.
    void TraceLog() const;

  private:
    std::array<std::uint32_t, 16> history_{};
    std::array<std::uint32_t, 99> log_{};
    std::uint32_t count_ = 0;  // entries of the log; stays at its end
    std::uint32_t peak_ = 0;
};

}  // namespace orma
