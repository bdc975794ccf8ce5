#include "audio/files/bwf_output.h"

#include <algorithm>
#include <numeric>

namespace orma {
namespace {

constexpr std::uint32_t kRiffSizeOffset = 4;

template <class Block>
void WriteBlock(JStream& out, const Block& block) {
    out.Write(block.data(), static_cast<std::uint32_t>(block.size()));
}

/// The sum of all bytes. Eight are taken at a time and added up in the four 16-bit lanes of a word:
/// one by one they would cost a fifth of publishing MP2.
std::uint32_t SumOfBytes(ByteSpan bytes) {
    constexpr std::uint64_t kEvenBytes = 0x00FF00FF00FF00FF;
    constexpr std::size_t kWordBytes = sizeof(std::uint64_t);
    constexpr std::size_t kRunBytes = 128 * kWordBytes;  // 128 * 2 * 255 still fits a lane
    std::uint32_t sum = 0;
    while (bytes.size() >= kWordBytes) {
        const std::size_t run = std::min(bytes.size(), kRunBytes) / kWordBytes * kWordBytes;
        std::uint64_t lanes = 0;
        for (std::size_t at = 0; at < run; at += kWordBytes) {
            const auto word = LoadLe<std::uint64_t>(&bytes[at]);
            lanes += (word & kEvenBytes) + ((word >> 8) & kEvenBytes);
        }
        for (; lanes != 0; lanes >>= 16)
            sum += static_cast<std::uint32_t>(lanes & 0xFFFF);
        bytes = bytes.subspan(run);
    }
    return std::accumulate(bytes.begin(), bytes.end(), sum);
}

}  // namespace

void WriteBextHead(JStream& out, const WriterContext& context) {
    WriteBlock(out, context.publication.head.Encode());
    WriteBlock(out, EncodeCodingHistory(context.publication.codingHistory));
}

void WriteMpegHead(JStream& out, WriterContext& context) {
    WriteBextHead(out, context);
    WriteBlock(out, context.publication.mpeg.Encode());
    // Reckoned, not asked for: an upload cannot tell its position.
    context.dataStart = BwfHead::kBytes + EvenLength(context.publication.codingHistory) + 2 +
                        MpegFormatBlock::kBytes;
}

void CountAudioData(WriterContext& context, ByteSpan block) {
    context.byteSum += SumOfBytes(block);
    context.dataBytes += static_cast<std::uint32_t>(block.size());
}

void WriteAudioData(JStream& out, WriterContext& context, ByteSpan block) {
    CountAudioData(context, block);
    WriteBlock(out, block);
}

std::uint32_t WriteTrailingChunks(JStream& out, const WriterContext& context) {
    const PublicationTemplates& publication = context.publication;
    WriteBlock(out, publication.levl);
    auto bytes = static_cast<std::uint32_t>(publication.levl.size());
    if (publication.hasQlty) {
        QltyChunk qlty = publication.qlty;
        qlty.fileSecurityWave = context.byteSum;
        const Bytes chunk = qlty.Encode();
        WriteBlock(out, chunk);
        bytes += static_cast<std::uint32_t>(chunk.size());
    }
    return bytes;
}

void PatchBwfSizes(JStream& out, const WriterContext& context, std::uint32_t trailingBytes,
                   std::uint32_t factSamples, std::uint32_t factOffset) {
    const std::uint32_t end = context.dataStart + context.dataBytes + trailingBytes;
    WriteNumberAt(out, kRiffSizeOffset, end - 8);
    WriteNumberAt(out, factOffset, factSamples);
    WriteNumberAt(out, context.dataStart - 4, context.dataBytes);
    out.SetPosition(static_cast<std::int32_t>(end));
}

}  // namespace orma
