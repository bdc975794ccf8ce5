#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace orma {

/// Toward zero, held at the ends of the range: an unstable band must not become undefined
/// behaviour. What is no number becomes 0.
template <class Float>
[[nodiscard]] std::int32_t Truncate(Float value) {
    constexpr Float kEnd = 2147483648.0;
    if (value >= kEnd) return std::numeric_limits<std::int32_t>::max();
    if (value < -kEnd) return std::numeric_limits<std::int32_t>::min();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(value);
}

}  // namespace orma
