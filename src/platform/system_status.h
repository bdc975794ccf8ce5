#pragma once

#include <cstdint>
#include <optional>

namespace orma {

/// What the machine says of itself. UI thread; does not block; nothing where it is unknown.
class SystemStatus {
  public:
    virtual ~SystemStatus() = default;

    /// Charge in percent, 0 to 100; none without a battery.
    [[nodiscard]] virtual std::optional<int> BatteryPercent() = 0;

    /// Memory that programs can still take, bytes.
    [[nodiscard]] virtual std::optional<std::uint64_t> FreeMemory() = 0;

    /// How busy the processors were since the last call, percent of all of them.
    [[nodiscard]] virtual std::optional<int> ProcessorLoad() = 0;
};

}  // namespace orma
