#pragma once

#include <string>
#include <vector>

#include "base/bytes.h"

namespace orma::test {

/// One chunk of a RIFF/WAVE file.
struct RiffChunk {
    std::string id;
    std::size_t offset = 0;  // of its content
    ByteSpan content;
};

/// The chunks of a RIFF/WAVE file, in order, as any reader of the format finds them; a test failure
/// when the RIFF size is not the file's or a chunk does not end with it. `file` outlives the
/// result.
[[nodiscard]] std::vector<RiffChunk> RiffChunks(const Bytes& file);

/// The ids of the chunks, separated by spaces.
[[nodiscard]] std::string RiffIds(const std::vector<RiffChunk>& chunks);

}  // namespace orma::test
