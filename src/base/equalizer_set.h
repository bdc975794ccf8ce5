#pragma once

#include <array>
#include <cstdint>

#include "base/text.h"

namespace orma {

/// One band of a parametric equaliser, as the settings keep it.
struct EqualizerBand {
    std::uint16_t frequency = 0;  // Hz, centre
    std::int16_t gain = 0;        // tenths of a dB
    std::uint16_t q = 0;          // tenths: 7 means 0.7
    std::uint32_t enabled = 0;

    friend bool operator==(const EqualizerBand&, const EqualizerBand&) = default;
};

/// A named equaliser set.
struct EqualizerSet {
    std::array<EqualizerBand, 3> bands;
    std::uint32_t on = 0;  // the master switch
    Text name;
    std::int16_t gainOffset = 0;  // dB, added to the input gain while the set is on

    friend bool operator==(const EqualizerSet&, const EqualizerSet&) = default;
};

}  // namespace orma
