#pragma once

#include <cstdint>

#include "audio/engine/spdif_input.h"

namespace orma {

/// What is recorded of a signal of `rate` Hz: kCapturing and the format, kNoSignal for a rate that
/// is not recorded, or kRateNotForMp2. `channels` 1 or 2, `shift` the resolution shift.
[[nodiscard]] SpdifResult SpdifFormatOfRate(std::uint32_t rate, bool mp2, std::uint16_t channels,
                                            unsigned shift, SpdifFormat& format);

}  // namespace orma
