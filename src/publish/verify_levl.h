#pragma once

#include <optional>
#include <vector>

#include "audio/files/bwf_chunks.h"
#include "publish/chunk_map.h"
#include "publish/verify_audio.h"
#include "publish/verify_head.h"

namespace orma {

/// Reads `levl` and checks its fields: fixed values, sizes, position of the peak, time stamp
/// against `bext`. Nothing when it cannot be read as a peak envelope of ours.
[[nodiscard]] std::optional<LevlChunk> CheckLevl(VerifySource& source, const FileChunk& chunk,
                                                 const PublishedHead& head, VerifyNotes& notes);

/// Compares the peak envelope with the sound: the length, then every value with the peak of its
/// period. Behind a join of clips the sound may lead or trail its levels by part of a period and
/// some frames, behind a cut by a frame; the comparison follows it there. `joins` are the periods,
/// in any order, where a further clip may begin. `chunk` is for offsets.
void CheckLevels(const LevlChunk& levl, const FileChunk& chunk, const SoundFacts& sound,
                 const PublicationFormat& format, std::vector<std::uint32_t> joins,
                 VerifyNotes& notes);

}  // namespace orma
