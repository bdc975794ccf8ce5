#pragma once

#include <optional>

#include "audio/files/bwf_chunks.h"
#include "publish/chunk_map.h"
#include "publish/verify_head.h"

namespace orma {

/// Reads the peak envelope, `levl`, and checks its fields: fixed values, sizes, position of the
/// peak, time stamp against `bext`. Nothing when it cannot be read as an envelope of ours.
[[nodiscard]] std::optional<LevlChunk> CheckEnvelope(VerifySource& source, const FileChunk& chunk,
                                                     const PublishedHead& head, VerifyNotes& notes);

}  // namespace orma
