#pragma once

#include <cstdint>
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
    bool storedFrames = false;  // the recordings are MP2
    bool fast = false;          // sent as one channel at the bit rate of the format
    DateTime recorded;          // local time of the first clip's recording

    /// The sum of the clips' net lengths, buffer periods.
    [[nodiscard]] std::uint32_t TotalPeriods() const;

    /// The frames of 1152 samples that the publication has, exactly: the stored frames that will
    /// be sent, decoding and encoding which gives as many; of PCM what its samples give at
    /// 48000 Hz. A stream that cannot seek has sizes in its head that are reckoned from this.
    [[nodiscard]] std::uint32_t TotalFrames() const;

    /// Bytes of its sound.
    [[nodiscard]] std::uint64_t DataBytes() const;

    /// Bytes that the published file has at most.
    [[nodiscard]] std::uint64_t FileBytes() const;

    /// Steps of the progress display: PCM one a period, stored MP2 frames one for each 16 KiB of
    /// the length, frames encoded anew one for every ten.
    [[nodiscard]] std::uint32_t ProgressSteps() const;
};

/// The header templates of a publication: every field, both trailing chunks, and all sizes.
/// `description` is 8-bit text, `ticks` the millisecond counter.
[[nodiscard]] PublicationTemplates TemplatesOf(const Publication& publication,
                                               const std::string& description,
                                               const OriginatorCodes& codes, std::uint32_t ticks);

}  // namespace orma
