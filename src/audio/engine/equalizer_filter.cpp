#include "audio/engine/equalizer_filter.h"

#include <complex>
#include <numbers>

#include "audio/engine/truncate.h"

namespace orma {
namespace {

// Between 0 and half the sample rate, with a bandwidth: what the bell filter is stable for.
bool IsRealisable(const EqualizerBand& band, std::uint32_t sampleRate) {
    return band.frequency != 0 && 2 * std::uint32_t{band.frequency} < sampleRate && band.q != 0;
}

/// The size of the band's answer at `z`, a point of the unit circle turned backwards.
double MagnitudeAt(const BandCoefficients& c, std::complex<double> z) {
    constexpr double kScale = 1.0 / kUnityCoefficient;
    const auto at = [&](std::size_t place) { return c[place] * kScale; };
    const std::complex<double> numerator = at(4) + at(3) * z + at(0) * z * z;
    const std::complex<double> denominator = 1.0 - at(1) * z - at(2) * z * z;
    return std::abs(numerator / denominator);
}

}  // namespace

std::optional<BellFilter> DesignBell(const EqualizerBand& band, std::uint32_t sampleRate) {
    if (!IsRealisable(band, sampleRate)) return std::nullopt;
    // K is the prewarped frequency, V the gain.
    const double gainDb = band.gain / 10.0;
    const double q = band.q / 10.0;
    const double k = std::tan(band.frequency * 3.14159265 / sampleRate);
    const double v = std::pow(10.0, gainDb / 20);
    const double d = gainDb >= 0 ? k / q : k / (v * q);
    const double n = 1 / (1 + d + k * k);
    const double a2 = (k * k + 1 - d) * n;
    return BellFilter{.b0 = 1 + d * (v - 1) * n,
                      .b1 = 2 * (k * k - 1) * n,
                      .b2 = a2 + d * (1 - v) * n,
                      .minusA1 = -2 * (k * k - 1) * n,
                      .minusA2 = -a2};
}

BandCoefficients FixedPoint(const BellFilter& filter) {
    const auto fixed = [](double value) { return Truncate(value * kUnityCoefficient); };
    return {fixed(filter.b2), fixed(filter.minusA1), fixed(filter.minusA2), fixed(filter.b1),
            fixed(filter.b0)};
}

double EqualizerResponseDb(const EqualizerSet& set, std::uint32_t sampleRate, double frequency) {
    if (set.on == 0 || sampleRate == 0) return 0;
    const std::complex<double> z = std::polar(1.0, -2 * std::numbers::pi * frequency / sampleRate);
    double db = 0;
    for (const EqualizerBand& band : set.bands) {
        if (band.enabled == 0) continue;
        if (const auto filter = DesignBell(band, sampleRate))
            db += 20 * std::log10(MagnitudeAt(FixedPoint(*filter), z));
    }
    return db;
}

}  // namespace orma
