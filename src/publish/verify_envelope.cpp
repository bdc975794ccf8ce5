#include "publish/verify_envelope.h"

#include <algorithm>

namespace orma {
namespace {

/// "YYYY:MM:DD:hh:mm:ss:uuu" of this date and time, any milliseconds, then zeros.
bool StampFits(const LevlChunk& levl, const DateTime& recorded) {
    const std::string wanted =
        Format("%04d:%02d:%02d:%02d:%02d:%02d:", recorded.year, recorded.month, recorded.day,
               recorded.hour, recorded.minute, recorded.second);
    const std::string_view stamp(levl.timestamp.data(), levl.timestamp.size());
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return stamp.starts_with(wanted) && std::ranges::all_of(stamp.substr(20, 3), isDigit) &&
           stamp.find_first_not_of('\0', 23) == std::string_view::npos;
}

void CheckPosition(const LevlChunk& levl, std::uint64_t at, VerifyNotes& notes) {
    const auto largest = std::ranges::max_element(levl.peaks);
    const auto position = static_cast<std::uint32_t>(largest - levl.peaks.begin());
    if (levl.positionOfPeak != position)
        notes.Find(at, Format("position of the peak is %u, the first largest value is at %u",
                              levl.positionOfPeak, position));
}

}  // namespace

std::optional<LevlChunk> CheckEnvelope(VerifySource& source, const FileChunk& chunk,
                                       const PublishedHead& head, VerifyNotes& notes) {
    // Bounded by the file's size, which the chunk lies in.
    Bytes bytes(std::size_t{chunk.size} + 8);
    if (!source.Read(chunk.offset, bytes)) {
        notes.Find(chunk.offset, "cannot be read");
        return std::nullopt;
    }
    std::optional<LevlChunk> levl = LevlChunk::Decode(bytes);
    if (!levl || levl->peaks.empty()) {
        notes.Find(chunk.offset, "'levl' is no peak envelope");
        return std::nullopt;
    }
    const std::size_t before = notes.Found();
    const auto expect = [&](std::size_t offset, std::uint32_t wanted, const char* name) {
        const auto value = LoadLe<std::uint32_t>(&bytes[offset]);
        if (value != wanted)
            notes.Find(chunk.offset + offset,
                       Format("%s is %u, should be %u", name, value, wanted));
    };
    const auto count = static_cast<std::uint32_t>(levl->peaks.size());
    expect(4, LevlChunk::BlockBytes(count) - 8, "size of 'levl'");
    expect(8, 0, "'levl' version");
    expect(16, 1, "points per value");
    expect(24, 1, "peak channels");
    expect(36, LevlChunk::kHeadBytes, "offset to peaks");
    CheckPosition(*levl, chunk.offset + 32, notes);
    if (head.recordedValid)
        notes.Require(StampFits(*levl, head.recorded), chunk.offset + 40,
                      "'levl' time stamp differs from the origination date and time");
    notes.Require(AllZero(ByteSpan(bytes).subspan(68, 60)), chunk.offset + 68,
                  "reserved bytes of 'levl' not zero");
    const std::size_t end = std::min<std::size_t>(LevlChunk::kHeadBytes + count, bytes.size());
    notes.Require(AllZero(ByteSpan(bytes).subspan(end)), chunk.offset + end,
                  "bytes behind the peaks not zero");
    if (levl->blockSize != 9600 && levl->blockSize != 4800 && levl->blockSize != 2400) {
        notes.Find(chunk.offset + 20, Format("block size is %u", levl->blockSize));
        return std::nullopt;
    }
    if (notes.Found() == before)
        notes.Fact(Format("'levl' holds %u values of %u samples", count, levl->blockSize));
    return levl;
}

}  // namespace orma
