#pragma once

#include <array>
#include <cstdint>

namespace orma {

/// The weight, about -0.22 to 1, of an input sample that lies `t` input samples away from the place
/// of the output: sin(pi t)/(pi t) under a Hann window that ends at 8 samples on either side, where
/// and beyond which the weight is 0.
[[nodiscard]] double InterpolationKernel(double t);

/// The kernel sampled at 480 places between two input samples, as integers with 32767 for 1. In one
/// line the table has 7680 entries, h[m] = 32767 * kernel((m - 3840) / 480) without its fraction;
/// here the 16 taps of an output stand together: row k holds h[k], h[k + 480] ... h[k + 7200], and
/// 0 for the entry that row 480 would take from behind the end.
class InterpolationTable {
  public:
    static constexpr std::uint32_t kTaps = 16;
    static constexpr std::uint32_t kPhases = 480;

    struct alignas(16) Row {
        std::array<std::int16_t, kTaps> taps{};
    };

    /// The one table, computed at the first call. Any thread.
    [[nodiscard]] static const InterpolationTable& Get();

    /// Row k, 0..480: the output lies 8 - k / 480 samples behind the first of its 16 inputs.
    [[nodiscard]] const Row& At(std::uint32_t k) const { return rows_[k]; }

  private:
    InterpolationTable();

    std::array<Row, kPhases + 1> rows_{};
};

}  // namespace orma
