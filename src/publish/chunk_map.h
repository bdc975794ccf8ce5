#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "publish/verify_notes.h"
#include "publish/verify_source.h"

namespace orma {

/// A chunk of a RIFF file: 8 bytes of head at `offset`, then `size` bytes, then a pad byte when the
/// size is odd.
struct FileChunk {
    std::string tag;  // four bytes as they stand
    std::uint64_t offset = 0;
    std::uint32_t size = 0;

    [[nodiscard]] std::uint64_t Content() const { return offset + 8; }
};

/// True when all bytes are zero, as reserved ones and the rest of a text have to be.
[[nodiscard]] bool AllZero(ByteSpan bytes);

/// Walks a RIFF/WAVE file from its first byte and notes what is wrong with its frame: tags, the
/// RIFF size against the file's, chunks that reach beyond the end. Returns the chunks that lie
/// whole in the file; at most 64 are looked at.
[[nodiscard]] std::vector<FileChunk> MapChunks(VerifySource& source, VerifyNotes& notes);

/// The first chunk with this tag; null when there is none.
[[nodiscard]] const FileChunk* FindChunk(const std::vector<FileChunk>& chunks,
                                         std::string_view tag);

/// Notes chunks that are missing, additional or out of order. A file with an `mext` chunk holds
/// MPEG audio.
void CheckChunkOrder(const std::vector<FileChunk>& chunks, bool mpeg, VerifyNotes& notes);

}  // namespace orma
