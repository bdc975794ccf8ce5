#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/system_status.h"

namespace orma {

/// The machine's state as Linux tells it in /sys/class/power_supply, /proc/meminfo and /proc/stat.
/// The load counts from the construction on.
class PosixSystemStatus : public SystemStatus {
  public:
    /// `root` stands for "/".
    explicit PosixSystemStatus(std::filesystem::path root = "/");

    /// Of all batteries that feed the machine, those of its mice and keyboards left out.
    [[nodiscard]] std::optional<int> BatteryPercent() override;
    [[nodiscard]] std::optional<std::uint64_t> FreeMemory() override;

    /// Calls that follow one another faster than the system counts get the answer before.
    [[nodiscard]] std::optional<int> ProcessorLoad() override;

  private:
    /// Of all processors since the system started, in ticks.
    struct Times {
        std::uint64_t busy = 0;
        std::uint64_t all = 0;
    };

    [[nodiscard]] std::optional<Times> ReadTimes() const;

    std::filesystem::path root_;
    std::optional<Times> before_;
    std::optional<int> load_;
};

}  // namespace orma
