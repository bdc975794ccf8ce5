#include "publish/publication.h"

#include "audio/files/buffer_period.h"
#include "publish/bext_fields.h"
#include "publish/peak_envelope.h"
#include "publish/quality_text.h"

namespace orma {
namespace {

constexpr std::uint32_t kPublishedRate = 48000;  // Hz

}  // namespace

std::uint32_t Publication::TotalPeriods() const {
    std::uint32_t total = 0;
    for (const ClipPlan& clip : clips)
        total += clip.NetLength();
    return total;
}

std::uint32_t Publication::TotalFrames() const {
    std::uint32_t frames = 0;
    std::uint64_t samples = 0;
    for (const ClipPlan& clip : clips) {
        frames += clip.FrameCount();
        samples += clip.samples;
    }
    if (storedFrames) return frames;
    // The clips are one stream to the converter: n frames consume floor(n * 1152 * rate / 48000)
    // samples, and the last one is filled up.
    const std::uint64_t perFrame = std::uint64_t{kMp2FrameSamples} * format.recordingRate;
    return static_cast<std::uint32_t>((samples * kPublishedRate + perFrame - 1) / perFrame);
}

std::uint64_t Publication::DataBytes() const {
    const std::uint64_t frameBytes =
        format.mp2 ? format.frameBytes : kMp2FrameSamples * 2U * format.channels;
    return TotalFrames() * frameBytes;
}

std::uint64_t Publication::FileBytes() const {
    // Head and report: even a hundred clips with all their marks stay below.
    constexpr std::uint64_t kOtherBytes = 16U << 20;
    return DataBytes() + LevlChunk::BlockBytes(TotalPeriods()) + kOtherBytes;
}

std::uint32_t Publication::ProgressSteps() const {
    if (!storedFrames) return TotalPeriods();
    if (fast) return Mp2FrameOfPeriod(TotalPeriods() / 10, format.shift);
    const std::uint64_t frames = Mp2FrameOfPeriod(TotalPeriods(), format.shift);
    return static_cast<std::uint32_t>(frames * format.frameBytes >> 14);
}

PublicationTemplates TemplatesOf(const Publication& publication, const std::string& description,
                                 const OriginatorCodes& codes, std::uint32_t ticks) {
    const PublicationFormat& format = publication.format;
    const LevlChunk levl = PeakEnvelope(publication.clips, publication.recorded, format.shift);

    PublicationTemplates templates;
    templates.codingHistory = CodingHistory(format);
    templates.levl = levl.Encode();
    templates.qlty.report = QualityText(publication.clips, LargestPeak(levl), format.shift);
    templates.qlty.fileSecurityReport = QltyChunk::ReportSum(templates.qlty.report);
    templates.hasQlty = true;

    templates.mpeg.channels = format.channels;
    templates.mpeg.averageBytesPerSecond = format.bitrate / 8;
    templates.mpeg.blockAlign = static_cast<std::uint16_t>(format.frameBytes);
    templates.mpeg.headBitrate = format.bitrate;
    templates.mpeg.factSamples = publication.TotalFrames() * kMp2FrameSamples;
    templates.mpeg.frameSize = static_cast<std::uint16_t>(format.frameBytes);
    templates.mpeg.dataSize = publication.TotalFrames() * format.frameBytes;

    const std::uint32_t history = EvenLength(templates.codingHistory);
    const auto reportBytes = static_cast<std::uint32_t>(templates.qlty.report.size());
    templates.head = BextFields(description, publication.recorded, format.channels, ticks, codes);
    templates.head.bextSize = history + 604;
    templates.head.riffSize = history + templates.mpeg.dataSize + 704 +
                              static_cast<std::uint32_t>(templates.levl.size()) +
                              QltyChunk::BlockBytes(reportBytes);
    return templates;
}

}  // namespace orma
