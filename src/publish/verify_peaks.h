#pragma once

#include <cstdint>
#include <vector>

#include "audio/files/bwf_chunks.h"
#include "publish/chunk_map.h"
#include "publish/verify_audio.h"

namespace orma {

/// Compares the peak envelope with the sound: the length, then every value with the peak of its
/// period. Behind a join of clips the sound may lead or trail its levels by part of a period and
/// some frames, behind a cut by a frame; the comparison follows it there. `joins` are the periods,
/// in any order, where a further clip may begin. `chunk` is for offsets.
void CheckPeaks(const LevlChunk& levl, const FileChunk& chunk, const SoundFacts& sound,
                const PublicationFormat& format, std::vector<std::uint32_t> joins,
                VerifyNotes& notes);

}  // namespace orma
