#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

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
[[nodiscard]] inline std::vector<RiffChunk> RiffChunks(const Bytes& file) {
    std::vector<RiffChunk> chunks;
    const std::string text(file.begin(), file.end());
    if (!text.starts_with("RIFF") || text.size() < 12 || text.substr(8, 4) != "WAVE") {
        ADD_FAILURE() << "no RIFF/WAVE head";
        return chunks;
    }
    EXPECT_EQ(LoadLe<std::uint32_t>(&file[4]), file.size() - 8) << "RIFF size";
    std::size_t at = 12;
    while (at + 8 <= file.size()) {
        const std::size_t size = LoadLe<std::uint32_t>(&file[at + 4]);
        const std::string id = text.substr(at, 4);
        if (size > file.size() - at - 8) {
            ADD_FAILURE() << id << " ends behind the file";
            return chunks;
        }
        chunks.push_back({id, at + 8, ByteSpan(file).subspan(at + 8, size)});
        at += 8 + size + size % 2;
    }
    EXPECT_EQ(at, file.size()) << "bytes behind the last chunk";
    return chunks;
}

/// The ids of the chunks, separated by spaces.
[[nodiscard]] inline std::string RiffIds(const std::vector<RiffChunk>& chunks) {
    std::string ids;
    for (const RiffChunk& chunk : chunks)
        ids += (ids.empty() ? "" : " ") + chunk.id;
    return ids;
}

}  // namespace orma::test
