#include "audio/files/bwf_chunks.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string_view>

namespace orma {
namespace {

constexpr std::uint32_t kSampleRate = 48000;
constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kMpeg = 0x0050;

template <std::size_t n>
void SetText(std::array<char, n>& field, std::string_view text) {
    std::copy_n(text.begin(), std::min(text.size(), n), field.begin());
}

template <class Array>
void StoreArray(std::uint8_t* to, const Array& from) {
    std::memcpy(to, from.data(), from.size());
}

template <class Array>
void LoadArray(Array& to, const std::uint8_t* from) {
    std::memcpy(to.data(), from, to.size());
}

/// True when `chunk` begins with `tag` and holds what its size field says.
bool HoldsChunk(ByteSpan chunk, std::string_view tag, std::uint32_t headBytes) {
    return chunk.size() >= headBytes && IsTag(chunk.data(), tag) &&
           std::uint64_t{LoadLe<std::uint32_t>(&chunk[4])} + 8 >= headBytes &&
           std::uint64_t{LoadLe<std::uint32_t>(&chunk[4])} + 8 <= chunk.size();
}

}  // namespace

BwfHead BwfHead::Template() {
    BwfHead head;
    SetText(head.description, "Description");
    SetText(head.originator, "PC");
    SetText(head.originatorReference, "Orma");
    SetText(head.originationDate, "2004-05-1");
    SetText(head.originationTime, "17:00:0");
    head.umid = {0x06, 0x0A, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                 0x01, 0x01, 0x08, 0x13, 0x13, 0x01, 0x12, 0x34};
    return head;
}

std::array<std::uint8_t, BwfHead::kBytes> BwfHead::Encode() const {
    std::array<std::uint8_t, kBytes> bytes{};
    StoreTag(&bytes[0], "RIFF");
    StoreLe(&bytes[4], riffSize);
    StoreTag(&bytes[8], "WAVE");
    StoreTag(&bytes[12], "bext");
    StoreLe(&bytes[16], bextSize);
    StoreArray(&bytes[20], description);
    StoreArray(&bytes[276], originator);
    StoreArray(&bytes[308], originatorReference);
    StoreArray(&bytes[340], originationDate);
    StoreArray(&bytes[350], originationTime);
    StoreLe(&bytes[358], timeReferenceLow);
    StoreLe(&bytes[362], timeReferenceHigh);
    StoreLe(&bytes[366], version);
    StoreArray(&bytes[368], umid);
    return bytes;
}

std::optional<BwfHead> BwfHead::Decode(ByteSpan bytes) {
    if (bytes.size() < kBytes || !IsTag(&bytes[0], "RIFF") || !IsTag(&bytes[8], "WAVE") ||
        !IsTag(&bytes[12], "bext"))
        return std::nullopt;
    BwfHead head;
    head.riffSize = LoadLe<std::uint32_t>(&bytes[4]);
    head.bextSize = LoadLe<std::uint32_t>(&bytes[16]);
    LoadArray(head.description, &bytes[20]);
    LoadArray(head.originator, &bytes[276]);
    LoadArray(head.originatorReference, &bytes[308]);
    LoadArray(head.originationDate, &bytes[340]);
    LoadArray(head.originationTime, &bytes[350]);
    head.timeReferenceLow = LoadLe<std::uint32_t>(&bytes[358]);
    head.timeReferenceHigh = LoadLe<std::uint32_t>(&bytes[362]);
    head.version = LoadLe<std::uint16_t>(&bytes[366]);
    LoadArray(head.umid, &bytes[368]);
    return head;
}

Bytes EncodeCodingHistory(const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(EvenLength(text) + 2);
    return bytes;
}

std::array<std::uint8_t, MpegFormatBlock::kBytes> MpegFormatBlock::Encode() const {
    constexpr std::uint32_t kFormatBytes = 40;
    constexpr std::uint16_t kExtensionBytes = 22;
    constexpr std::uint16_t kLayer2 = 2;
    // Says single channel for stereo as well: deliberate, receivers go by nChannels.
    constexpr std::uint16_t kSingleChannel = 8;
    constexpr std::uint16_t kMpeg1 = 0x0010;
    constexpr std::uint32_t kFactBytes = 4;
    constexpr std::uint32_t kMextBytes = 12;
    // Homogeneous sound, padding bit not used (EBU Tech 3285, supplement 1).
    constexpr std::uint16_t kSoundInformation = 3;

    std::array<std::uint8_t, kBytes> bytes{};
    StoreTag(&bytes[0], "fmt ");
    StoreLe(&bytes[4], kFormatBytes);
    StoreLe(&bytes[8], kMpeg);
    StoreLe(&bytes[10], channels);
    StoreLe(&bytes[12], kSampleRate);
    StoreLe(&bytes[16], averageBytesPerSecond);
    StoreLe(&bytes[20], blockAlign);
    StoreLe(&bytes[24], kExtensionBytes);
    StoreLe(&bytes[26], kLayer2);
    StoreLe(&bytes[28], headBitrate);
    StoreLe(&bytes[32], kSingleChannel);
    StoreLe(&bytes[38], kMpeg1);
    StoreTag(&bytes[48], "fact");
    StoreLe(&bytes[52], kFactBytes);
    StoreLe(&bytes[56], factSamples);
    StoreTag(&bytes[60], "mext");
    StoreLe(&bytes[64], kMextBytes);
    StoreLe(&bytes[68], kSoundInformation);
    StoreLe(&bytes[70], frameSize);
    StoreTag(&bytes[80], "data");
    StoreLe(&bytes[84], dataSize);
    return bytes;
}

std::optional<MpegFormatBlock> MpegFormatBlock::Decode(ByteSpan bytes) {
    if (bytes.size() < kBytes || !IsTag(&bytes[0], "fmt ") ||
        LoadLe<std::uint16_t>(&bytes[8]) != kMpeg || !IsTag(&bytes[48], "fact") ||
        !IsTag(&bytes[60], "mext") || !IsTag(&bytes[80], "data"))
        return std::nullopt;
    MpegFormatBlock block;
    block.channels = LoadLe<std::uint16_t>(&bytes[10]);
    block.averageBytesPerSecond = LoadLe<std::uint32_t>(&bytes[16]);
    block.blockAlign = LoadLe<std::uint16_t>(&bytes[20]);
    block.headBitrate = LoadLe<std::uint32_t>(&bytes[28]);
    block.factSamples = LoadLe<std::uint32_t>(&bytes[56]);
    block.frameSize = LoadLe<std::uint16_t>(&bytes[70]);
    block.dataSize = LoadLe<std::uint32_t>(&bytes[84]);
    return block;
}

std::array<std::uint8_t, PcmFormatBlock::kBytes> PcmFormatBlock::Encode() const {
    constexpr std::uint32_t kFormatBytes = 16;
    constexpr std::uint32_t kFactBytes = 4;
    constexpr std::uint16_t kBits = 16;

    std::array<std::uint8_t, kBytes> bytes{};
    StoreTag(&bytes[0], "fmt ");
    StoreLe(&bytes[4], kFormatBytes);
    StoreLe(&bytes[8], kPcm);
    StoreLe(&bytes[10], channels);
    StoreLe(&bytes[12], kSampleRate);
    StoreLe(&bytes[16], std::uint32_t{channels} * kSampleRate * (kBits / 8));
    StoreLe(&bytes[20], blockAlign);
    StoreLe(&bytes[22], kBits);
    StoreTag(&bytes[24], "fact");
    StoreLe(&bytes[28], kFactBytes);
    StoreLe(&bytes[32], factSamples);
    StoreTag(&bytes[36], "data");
    StoreLe(&bytes[40], dataSize);
    return bytes;
}

std::optional<PcmFormatBlock> PcmFormatBlock::Decode(ByteSpan bytes) {
    if (bytes.size() < kBytes || !IsTag(&bytes[0], "fmt ") ||
        LoadLe<std::uint16_t>(&bytes[8]) != kPcm || !IsTag(&bytes[24], "fact") ||
        !IsTag(&bytes[36], "data"))
        return std::nullopt;
    PcmFormatBlock block;
    block.channels = LoadLe<std::uint16_t>(&bytes[10]);
    block.blockAlign = LoadLe<std::uint16_t>(&bytes[20]);
    block.factSamples = LoadLe<std::uint32_t>(&bytes[32]);
    block.dataSize = LoadLe<std::uint32_t>(&bytes[40]);
    return block;
}

Bytes LevlChunk::Encode() const {
    constexpr std::uint32_t kOneByteValues = 1;
    constexpr std::uint32_t kPointsPerValue = 1;
    constexpr std::uint32_t kPeakChannels = 1;

    const auto values = static_cast<std::uint32_t>(peaks.size());
    Bytes bytes(BlockBytes(values));
    StoreTag(&bytes[0], "levl");
    StoreLe(&bytes[4], static_cast<std::uint32_t>(bytes.size() - 8));
    StoreLe(&bytes[12], kOneByteValues);
    StoreLe(&bytes[16], kPointsPerValue);
    StoreLe(&bytes[20], blockSize);
    StoreLe(&bytes[24], kPeakChannels);
    StoreLe(&bytes[28], values);
    StoreLe(&bytes[32], positionOfPeak);
    StoreLe(&bytes[36], kHeadBytes);
    StoreArray(&bytes[40], timestamp);
    std::ranges::copy(peaks, &bytes[kHeadBytes]);
    return bytes;
}

std::optional<LevlChunk> LevlChunk::Decode(ByteSpan chunk) {
    if (!HoldsChunk(chunk, "levl", kHeadBytes)) return std::nullopt;
    const std::uint64_t values = LoadLe<std::uint32_t>(&chunk[28]);
    const std::uint64_t offset = LoadLe<std::uint32_t>(&chunk[36]);
    if (LoadLe<std::uint32_t>(&chunk[12]) != 1 || offset < kHeadBytes ||
        offset + values > std::uint64_t{LoadLe<std::uint32_t>(&chunk[4])} + 8)
        return std::nullopt;
    LevlChunk levl;
    levl.blockSize = LoadLe<std::uint32_t>(&chunk[20]);
    levl.positionOfPeak = LoadLe<std::uint32_t>(&chunk[32]);
    LoadArray(levl.timestamp, &chunk[40]);
    const ByteSpan peaks = chunk.subspan(offset, values);
    levl.peaks.assign(peaks.begin(), peaks.end());
    return levl;
}

std::uint32_t QltyChunk::ReportSum(const std::string& report) {
    // The head counts among the summed bytes and is zero; the last 16 bytes are left out.
    const std::uint32_t summed = BlockBytes(static_cast<std::uint32_t>(report.size())) - 16;
    const std::size_t textBytes =
        std::min<std::size_t>(summed > kHeadBytes ? summed - kHeadBytes : 0, report.size());
    const ByteSpan text = AsBytes(report).first(textBytes);
    return std::accumulate(text.begin(), text.end(), std::uint32_t{0});
}

Bytes QltyChunk::Encode() const {
    Bytes bytes(BlockBytes(static_cast<std::uint32_t>(report.size())));
    StoreTag(&bytes[0], "qlty");
    StoreLe(&bytes[4], static_cast<std::uint32_t>(bytes.size() - 8));
    StoreLe(&bytes[8], fileSecurityReport);
    StoreLe(&bytes[12], fileSecurityWave);
    std::ranges::copy(AsBytes(report), &bytes[kHeadBytes]);
    return bytes;
}

std::optional<QltyChunk> QltyChunk::Decode(ByteSpan chunk) {
    if (!HoldsChunk(chunk, "qlty", kHeadBytes)) return std::nullopt;
    QltyChunk qlty;
    qlty.fileSecurityReport = LoadLe<std::uint32_t>(&chunk[8]);
    qlty.fileSecurityWave = LoadLe<std::uint32_t>(&chunk[12]);
    const ByteSpan text = chunk.first(LoadLe<std::uint32_t>(&chunk[4]) + 8).subspan(kHeadBytes);
    qlty.report.assign(text.begin(), std::ranges::find(text, 0));
    return qlty;
}

}  // namespace orma
