#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/files/writer_context.h"
#include "publish/clip_plan.h"
#include "publish/coding_history.h"
#include "publish/umid.h"

namespace orma {

/// A publication as it is known before its first byte is written, whatever it is delivered to.
struct Publication {
    std::vector<ClipPlan> clips;
    PublicationFormat format;
    DateTime recorded;  // local time of the first clip's recording

    /// The sum of the clips' net lengths, buffer periods.
    [[nodiscard]] std::uint32_t TotalPeriods() const;

    /// MP2: the stored frames that will be sent. PCM: what the length needs at 48000 Hz, rounded
    /// up; the writer replaces the sizes that follow from it by what it wrote.
    [[nodiscard]] std::uint32_t TotalFrames() const;

    /// Bytes that the published file has at most.
    [[nodiscard]] std::uint64_t FileBytes() const;

    /// Steps of the progress display: PCM one a period, MP2 one for each 16 KiB of the length.
    [[nodiscard]] std::uint32_t ProgressSteps() const;
};

/// The header templates of a publication: every field, both trailing chunks, and all sizes.
/// `description` is 8-bit text, `ticks` the millisecond counter.
[[nodiscard]] PublicationTemplates TemplatesOf(const Publication& publication,
                                               const std::string& description,
                                               const OriginatorCodes& codes, std::uint32_t ticks);

}  // namespace orma
