#pragma once

#include <cstdint>
#include <vector>

#include "audio/files/bwf_chunks.h"
#include "publish/chunk_map.h"

namespace orma {

/// What the quality report says, for the checks that need it beside others.
struct QualityFacts {
    std::vector<std::uint32_t> joins;  // buffer periods at which a further clip may begin
};

/// Checks `qlty` against the data's byte sum and against the peak envelope (null: none could be
/// read): checksums, layout of the text, peak line, cue lines numbered from 0 with rising times,
/// the last one "End" at the total length.
[[nodiscard]] QualityFacts CheckQuality(VerifySource& source, const FileChunk& qlty,
                                        std::uint32_t dataSum, const LevlChunk* levl,
                                        VerifyNotes& notes);

}  // namespace orma
