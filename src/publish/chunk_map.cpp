#include "publish/chunk_map.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace orma {
namespace {

constexpr std::size_t kMaxChunks = 64;
constexpr std::uint64_t kRiffHeadBytes = 12;
constexpr std::uint64_t kChunkHeadBytes = 8;

std::string Printable(std::string_view tag) {
    std::string text(tag);
    const auto isUnprintable = [](char c) { return c < 0x20 || c > 0x7E; };
    std::ranges::replace_if(text, isUnprintable, '?');
    return text;
}

std::string Names(const std::vector<std::string_view>& tags) {
    std::string names;
    for (const std::string_view tag : tags)
        names += (names.empty() ? "'" : " '") + Printable(tag) + "'";
    return names.empty() ? "none" : names;
}

}  // namespace

bool AllZero(ByteSpan bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

std::vector<FileChunk> MapChunks(VerifySource& source, VerifyNotes& notes) {
    std::vector<FileChunk> chunks;
    std::array<std::uint8_t, kRiffHeadBytes> head{};
    if (!source.Read(0, head)) {
        notes.Find(0, "too short for a RIFF head");
        return chunks;
    }
    notes.Require(IsTag(&head[0], "RIFF"), 0, "no 'RIFF' tag");
    notes.Require(IsTag(&head[8], "WAVE"), 8, "no 'WAVE' tag");
    const auto riffSize = LoadLe<std::uint32_t>(&head[4]);
    if (riffSize + kChunkHeadBytes == source.Size())
        notes.Fact(Format("RIFF size fits the file of %llu bytes",
                          static_cast<unsigned long long>(source.Size())));
    else
        notes.Find(4, Format("RIFF size is %u, the file has %llu bytes behind it", riffSize,
                             static_cast<unsigned long long>(source.Size() - kChunkHeadBytes)));

    std::uint64_t offset = kRiffHeadBytes;
    while (offset < source.Size()) {
        std::array<std::uint8_t, kChunkHeadBytes> chunkHead{};
        if (!source.Read(offset, chunkHead)) {
            notes.Find(offset, Format("%llu stray bytes at the end",
                                      static_cast<unsigned long long>(source.Size() - offset)));
            break;
        }
        if (chunks.size() == kMaxChunks) {
            notes.Find(offset, "more than 64 chunks");
            break;
        }
        const FileChunk chunk{{chunkHead.begin(), chunkHead.begin() + 4},
                              offset,
                              LoadLe<std::uint32_t>(&chunkHead[4])};
        if (chunk.size > source.Size() - chunk.Content()) {
            notes.Find(offset + 4, Format("chunk '%s' of %u bytes reaches beyond the end",
                                          Printable(chunk.tag).c_str(), chunk.size));
            break;
        }
        chunks.push_back(chunk);
        offset = chunk.Content() + chunk.size + (chunk.size & 1U);
    }
    return chunks;
}

const FileChunk* FindChunk(const std::vector<FileChunk>& chunks, std::string_view tag) {
    const auto found = std::ranges::find(chunks, tag, &FileChunk::tag);
    return found == chunks.end() ? nullptr : &*found;
}

void CheckChunkOrder(const std::vector<FileChunk>& chunks, bool mpeg, VerifyNotes& notes) {
    std::vector<std::string_view> expected = {"bext", "fmt ", "fact", "data", "levl", "qlty"};
    if (mpeg) expected.insert(expected.begin() + 3, "mext");
    std::vector<std::string_view> actual;
    actual.reserve(chunks.size());
    for (const FileChunk& chunk : chunks)
        actual.push_back(chunk.tag);
    if (actual == expected)
        notes.Fact("chunks in order: " + Names(actual));
    else
        notes.Find(12, "chunks are " + Names(actual) + ", should be " + Names(expected));
}

}  // namespace orma
