#pragma once

#include <cstdint>

#include "audio/files/interpolation_table.h"

namespace orma {

/// The sum over the 16 neighbouring samples at `x` of (tap * sample) >> 4. Each product loses its
/// low four bits before the sum, which a 32-bit integer then always holds.
[[nodiscard]] std::int32_t TapSumPortable(const InterpolationTable::Row& row,
                                          const std::int16_t* x);

/// The same sum, equal in every bit, in the processor's vector instructions where it has them.
[[nodiscard]] std::int32_t TapSum(const InterpolationTable::Row& row, const std::int16_t* x);

}  // namespace orma
