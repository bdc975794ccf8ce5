#pragma once

#include <array>
#include <cstdint>

#include "base/text.h"

namespace orma {

/// One peaking band of the input equaliser, in the units of the settings file.
struct EqualizerBand {
    std::uint16_t frequency = 0;  // centre, Hz
    std::int16_t gain = 0;        // 0.1 dB
    std::uint16_t q = 0;          // 0.1, so 7 means a Q of 0.7
    std::uint32_t enabled = 0;

    bool operator==(const EqualizerBand&) const = default;
};

/// A named setting of the whole input equaliser, chosen by its name.
struct EqualizerSet {
    std::array<EqualizerBand, 3> bands;
    std::uint32_t on = 0;  // master switch of the three bands
    Text name;
    std::int16_t gainOffset = 0;  // dB, added to the input gain while the set is on

    bool operator==(const EqualizerSet&) const = default;
};

}  // namespace orma
