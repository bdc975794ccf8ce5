#include "audio/files/bwf_output.h"

#include <numeric>

namespace orma {
namespace {

constexpr std::uint32_t kRiffSizeOffset = 4;

template <class Block>
void WriteBlock(JStream& out, const Block& block) {
    out.Write(block.data(), static_cast<std::uint32_t>(block.size()));
}

void WriteAt(JStream& out, std::uint32_t offset, std::uint32_t value) {
    out.SetPosition(static_cast<std::int32_t>(offset));
    out.Write(&value, sizeof value);
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

void WriteAudioData(JStream& out, WriterContext& context, ByteSpan block) {
    context.byteSum = std::accumulate(block.begin(), block.end(), context.byteSum);
    WriteBlock(out, block);
    context.dataBytes += static_cast<std::uint32_t>(block.size());
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
    WriteAt(out, kRiffSizeOffset, end - 8);
    WriteAt(out, factOffset, factSamples);
    WriteAt(out, context.dataStart - 4, context.dataBytes);
    out.SetPosition(static_cast<std::int32_t>(end));
}

}  // namespace orma
