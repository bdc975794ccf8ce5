#include "support/riff_chunks.h"

#include <gtest/gtest.h>

namespace orma::test {

std::vector<RiffChunk> RiffChunks(const Bytes& file) {
    std::vector<RiffChunk> chunks;
    const std::string head(file.begin(), file.begin() + std::min<long>(12, std::ssize(file)));
    if (head.size() < 12 || head.substr(0, 4) != "RIFF" || head.substr(8) != "WAVE") {
        ADD_FAILURE() << "no RIFF/WAVE head";
        return chunks;
    }
    EXPECT_EQ(LoadLe<std::uint32_t>(&file[4]), file.size() - 8) << "RIFF size";
    std::size_t at = 12;
    while (at + 8 <= file.size()) {
        const std::size_t size = LoadLe<std::uint32_t>(&file[at + 4]);
        const std::string id(file.begin() + static_cast<long>(at),
                             file.begin() + static_cast<long>(at) + 4);
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

std::string RiffIds(const std::vector<RiffChunk>& chunks) {
    std::string ids;
    for (const RiffChunk& chunk : chunks)
        ids += (ids.empty() ? "" : " ") + chunk.id;
    return ids;
}

}  // namespace orma::test
