#include <algorithm>
#include <stdexcept>

#include "audio/files/bwf_chunks.h"
#include "cli/describe.h"

namespace orma::cli {
namespace {

constexpr std::uint32_t kLongestListing = 64;  // bytes of an unknown chunk that are listed
constexpr std::size_t kMostChunks = 4096;

struct Chunk {
    std::string id;
    std::uint32_t offset = 0;  // of the chunk's head
    std::uint32_t size = 0;    // as the head says
    Bytes content;             // without the head; not kept for audio data
};

/// The chunks of an open file. A size that reaches past the file's end is listed as it stands, with
/// the content that is there.
std::vector<Chunk> ReadChunks(JStreamFile& file) {
    std::vector<Chunk> chunks;
    const std::uint64_t fileSize = file.GetSize();
    std::uint64_t at = 12;
    while (at + 8 <= fileSize && chunks.size() < kMostChunks) {
        std::array<std::uint8_t, 8> head{};
        file.SetPosition(static_cast<std::int32_t>(at));
        file.Read(head.data(), 8);
        Chunk chunk{std::string(head.begin(), head.begin() + 4),
                    static_cast<std::uint32_t>(at),
                    LoadLe<std::uint32_t>(head.data() + 4),
                    {}};
        const std::uint64_t there = std::min<std::uint64_t>(chunk.size, fileSize - at - 8);
        if (chunk.id != "data") {
            chunk.content.resize(there);
            file.Read(chunk.content.data(), static_cast<std::uint32_t>(there));
        }
        // Our own chunks are even; others are followed by a pad byte when they are not.
        at += 8 + std::uint64_t{chunk.size} + (chunk.size & 1U);
        chunks.push_back(std::move(chunk));
    }
    return chunks;
}

Json Hex(ByteSpan bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes)
        text += Format("%02X", byte);
    return text;
}

/// 8-bit text up to its first zero.
template <class Array>
Json Field(const Array& text) {
    const std::string whole(text.begin(), text.end());
    return ToJson(whole.substr(0, whole.find('\0')));
}

Json Lines(const std::string& text) {
    Json lines = Json::array();
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = std::min(text.find("\r\n", from), text.size());
        lines.push_back(ToJson(text.substr(from, end - from)));
        from = end + 2;
    }
    return lines;
}

Json BextFields(JStreamFile& file, const Chunk& chunk) {
    std::array<std::uint8_t, BwfHead::kBytes> bytes{};
    file.SetPosition(0);
    file.Read(bytes.data(), BwfHead::kBytes);
    const auto head = BwfHead::Decode(bytes);
    if (!head) return {{"unreadable", true}};
    constexpr std::size_t kFixedBytes = BwfHead::kBytes - 20;
    std::string history;
    if (chunk.content.size() > kFixedBytes)
        history.assign(chunk.content.begin() + kFixedBytes, chunk.content.end());
    history.resize(std::min(history.find('\0'), history.size()));
    return {{"Description", Field(head->description)},
            {"Originator", Field(head->originator)},
            {"OriginatorReference", Field(head->originatorReference)},
            {"OriginationDate", Field(head->originationDate)},
            {"OriginationTime", Field(head->originationTime)},
            {"TimeReference low", head->timeReferenceLow},
            {"TimeReference high", head->timeReferenceHigh},
            {"Version", head->version},
            {"UMID", Hex(head->umid)},
            {"CodingHistory", Lines(history)}};
}

Json FormatFields(const Bytes& content) {
    if (content.size() < 16) return {{"unreadable", true}};
    const auto u16 = [&](std::size_t at) { return LoadLe<std::uint16_t>(content.data() + at); };
    const auto u32 = [&](std::size_t at) { return LoadLe<std::uint32_t>(content.data() + at); };
    Json fields = {{"wFormatTag", u16(0)},     {"nChannels", u16(2)},
                   {"nSamplesPerSec", u32(4)}, {"nAvgBytesPerSec", u32(8)},
                   {"nBlockAlign", u16(12)},   {"wBitsPerSample", u16(14)}};
    if (content.size() < 40) return fields;
    fields["cbSize"] = u16(16);
    fields["fwHeadLayer"] = u16(18);
    fields["dwHeadBitrate"] = u32(20);
    fields["fwHeadMode"] = u16(24);
    fields["fwHeadModeExt"] = u16(26);
    fields["wHeadEmphasis"] = u16(28);
    fields["fwHeadFlags"] = u16(30);
    fields["dwPTSLow"] = u32(32);
    fields["dwPTSHigh"] = u32(36);
    return fields;
}

Bytes WithHead(const Chunk& chunk) {
    Bytes whole(8 + chunk.content.size());
    StoreTag(whole.data(), chunk.id);
    StoreLe(whole.data() + 4, chunk.size);
    std::copy(chunk.content.begin(), chunk.content.end(), whole.begin() + 8);
    return whole;
}

Json LevlFields(const Chunk& chunk) {
    const auto levl = LevlChunk::Decode(WithHead(chunk));
    if (!levl) return {{"unreadable", true}};
    return {{"dwBlockSize", levl->blockSize},
            {"dwNumPeakFrames", levl->peaks.size()},
            {"dwPosPeakOfPeaks", levl->positionOfPeak},
            {"strTimestamp", Field(levl->timestamp)},
            {"peaks", levl->peaks}};
}

Json QltyFields(const Chunk& chunk) {
    const auto qlty = QltyChunk::Decode(WithHead(chunk));
    if (!qlty) return {{"unreadable", true}};
    return {{"FileSecurityReport", qlty->fileSecurityReport},
            {"FileSecurityWave", qlty->fileSecurityWave},
            {"report", Lines(qlty->report)}};
}

Json MextFields(const Bytes& content) {
    if (content.size() < 8) return {{"unreadable", true}};
    const auto u16 = [&](std::size_t at) { return LoadLe<std::uint16_t>(content.data() + at); };
    return {{"wSoundInformation", u16(0)},
            {"wFrameSize", u16(2)},
            {"wAncillaryDataLength", u16(4)},
            {"wAncillaryDataDef", u16(6)}};
}

Json ChunkFields(JStreamFile& file, const Chunk& chunk) {
    if (chunk.id == "bext") return BextFields(file, chunk);
    if (chunk.id == "fmt ") return FormatFields(chunk.content);
    if (chunk.id == "levl") return LevlFields(chunk);
    if (chunk.id == "qlty") return QltyFields(chunk);
    if (chunk.id == "mext") return MextFields(chunk.content);
    if (chunk.id == "fact" && chunk.content.size() >= 4)
        return {{"samples", LoadLe<std::uint32_t>(chunk.content.data())}};
    if (chunk.id == "data") return Json::object();
    const std::size_t listed = std::min<std::size_t>(chunk.content.size(), kLongestListing);
    return {{"content", Hex({chunk.content.data(), listed})}};
}

}  // namespace

Json DescribeWave(Application& app, const Text& path) {
    JStreamFile file(app.files, path, true);
    if (!file.IsOpen()) throw std::runtime_error("cannot read " + ToUtf8(path));
    std::array<std::uint8_t, 12> form{};
    file.Read(form.data(), 12);
    if (!IsTag(form.data() + 8, "WAVE"))
        throw std::runtime_error("not a file of this program: " + ToUtf8(path));

    const std::vector<Chunk> chunks = ReadChunks(file);
    const bool published = !chunks.empty() && chunks.front().id == "bext";
    Json list = Json::array();
    std::uint64_t bytesPerPeriod = 0;
    std::uint32_t dataSize = 0;
    for (const Chunk& chunk : chunks) {
        Json fields = {{"id", ToJson(chunk.id)}, {"offset", chunk.offset}, {"size", chunk.size}};
        fields.update(ChunkFields(file, chunk));
        list.push_back(std::move(fields));
        if (chunk.id == "data") dataSize = chunk.size;
        if (chunk.id == "fmt " && chunk.content.size() >= 16)
            bytesPerPeriod =
                LoadLe<std::uint32_t>(chunk.content.data() + 8) / app.audio.PeriodsPerSecond();
    }
    Json fields = {{"kind", published ? "published file" : "WAV take"},
                   {"file size", file.GetSize()},
                   {"RIFF size", LoadLe<std::uint32_t>(form.data() + 4)}};
    if (!published && bytesPerPeriod != 0) fields["length in periods"] = dataSize / bytesPerPeriod;
    fields["chunks"] = std::move(list);
    file.Close();
    if (!published) AddLevels(app, path, fields);
    return fields;
}

}  // namespace orma::cli
