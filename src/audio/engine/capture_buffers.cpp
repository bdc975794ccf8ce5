#include "audio/engine/capture_buffers.h"

#include <algorithm>

#include "audio/files/level_tables.h"

namespace orma {

CaptureBuffers::CaptureBuffers()
    : memory_(std::make_unique_for_overwrite<std::uint8_t[]>(std::size_t{kCount} * kBytes)) {
    // Not set to zero: most of it is for formats that are never used, and stays no memory at all.
    for (std::size_t index = 0; index < kCount; ++index) {
        records_[index].index = static_cast<std::uint32_t>(index);
        records_[index].level = kQuietLevel;
        records_[index].data = memory_.get() + index * kBytes;
    }
}

bool CaptureBuffers::AnyQueued() const {
    return std::any_of(records_.begin(), records_.end(),
                       [](const CaptureBuffer& record) { return record.queued; });
}

}  // namespace orma
