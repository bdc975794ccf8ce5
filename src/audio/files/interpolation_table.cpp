#include "audio/files/interpolation_table.h"

#include <cmath>
#include <numbers>

namespace orma {

double InterpolationKernel(double t) {
    constexpr double kReach = 8.0;
    if (t == 0.0) return 1.0;
    if (std::abs(t) >= kReach) return 0.0;
    const double sinc = std::sin(std::numbers::pi * t) / (std::numbers::pi * t);
    const double window = std::cos(std::numbers::pi / 2.0 * t / kReach);
    return sinc * window * window;
}

const InterpolationTable& InterpolationTable::Get() {
    static const InterpolationTable table;
    return table;
}

InterpolationTable::InterpolationTable() {
    constexpr std::uint32_t kEntries = kTaps * kPhases;
    constexpr double kOne = 32767.0;
    for (std::uint32_t k = 0; k <= kPhases; ++k) {
        for (std::uint32_t tap = 0; tap < kTaps; ++tap) {
            const std::uint32_t m = k + tap * kPhases;
            if (m >= kEntries) continue;
            const double t = (m - kEntries / 2.0) / kPhases;
            rows_[k].taps[tap] = static_cast<std::int16_t>(kOne * InterpolationKernel(t));
        }
    }
}

}  // namespace orma
