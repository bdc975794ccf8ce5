#pragma once

#include <cstdint>
#include <span>

#include "audio/files/bwf_chunks.h"
#include "platform/date_time.h"
#include "publish/clip_plan.h"

namespace orma {

/// The peak envelope of a publication (EBU Tech 3285, supplement 3): the level bytes of all clips
/// in order as linear peaks 0..255, the time of the first clip's recording, and the first largest
/// value's index (0xFFFFFFFF without values).
[[nodiscard]] LevlChunk PeakEnvelope(std::span<const ClipPlan> clips, const DateTime& recorded,
                                     unsigned shift);

/// The largest value; 0 without values.
[[nodiscard]] std::uint8_t LargestPeak(const LevlChunk& levl);

}  // namespace orma
