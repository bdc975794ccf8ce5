#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "base/equalizer_set.h"

namespace orma {

/// A band of the equaliser as a direct-form-II biquad.
struct BellFilter {
    double b0 = 1;
    double b1 = 0;
    double b2 = 0;
    double minusA1 = 0;
    double minusA2 = 0;
};

/// The coefficients that the sound runs through, scaled by 2^28: b2, -a1, -a2, b1, b0.
using BandCoefficients = std::array<std::int32_t, 5>;

inline constexpr std::int32_t kUnityCoefficient = 1 << 28;
inline constexpr BandCoefficients kPassThrough = {0, 0, 0, 0, kUnityCoefficient};

/// The peaking filter of an enabled band, whose numerator carries a boost and whose denominator
/// carries a cut: the bilinear transform of the analogue bell, with the frequency prewarped. None
/// that no filter can realise: 0 Hz, half the sample rate (Hz) or above, Q 0.
[[nodiscard]] std::optional<BellFilter> DesignBell(const EqualizerBand& band,
                                                   std::uint32_t sampleRate);

/// As 32-bit integers, truncated toward zero and held at the ends of their range.
[[nodiscard]] BandCoefficients FixedPoint(const BellFilter& filter);

/// What the sound of that frequency (Hz) gains on its way through the bands of a set whose master
/// switch is on, dB: taken from the integer coefficients, and without the set's gain offset.
/// Bands that are switched off or cannot be realised, and a set that is off, give 0.
[[nodiscard]] double EqualizerResponseDb(const EqualizerSet& set, std::uint32_t sampleRate,
                                         double frequency);

}  // namespace orma
