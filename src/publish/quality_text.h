#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "publish/clip_plan.h"

namespace orma {

/// A position in the published file as cue lines write it: "hh:mm:ss:f". The last figure is twice
/// the period within the second: tenths at 5 periods a second, and above 9 at finer resolutions.
/// Deliberately so; receivers read it that way.
[[nodiscard]] std::string CueTime(std::uint32_t periods, unsigned shift);

/// The peak line's figure in dB full scale with one decimal; "-inf" for 0. `peak` is linear 0..255.
/// The decimal point does not follow the locale.
[[nodiscard]] std::string PeakDecibels(std::uint8_t peak);

/// The report of the `qlty` chunk (EBU Tech 3285, supplement 2 has the frame): a start line, the
/// peak line, then a cue line for every mark that lies in a kept range, one at the start of each
/// following clip, and "End" at the total length. 8-bit text, lines ended by "\r\n".
[[nodiscard]] std::string QualityText(std::span<const ClipPlan> clips, std::uint8_t maxPeak,
                                      unsigned shift);

}  // namespace orma
