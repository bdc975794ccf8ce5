#include "publish/clip_sender.h"

#include <algorithm>

#include "audio/files/buffer_period.h"
#include "audio/files/mp2_header.h"
#include "base/trace.h"

namespace orma {
namespace {

/// Bytes of 16-bit output that the file holds of a period: fewer than a whole period's at the end,
/// 0 behind it.
std::uint32_t OutputBytesOfPeriod(const AudioFileFormat& format, std::uint32_t period,
                                  std::uint16_t outputChannels) {
    const std::uint64_t start = std::uint64_t{period} * format.bytesPerPeriod;
    if (start >= format.dataLength) return 0;
    const std::uint64_t stored =
        std::min<std::uint64_t>(format.bytesPerPeriod, format.dataLength - start);
    const std::uint32_t sampleBytes = format.channels * (format.bitsPerSample / 8U);
    return static_cast<std::uint32_t>(stored / sampleBytes) * 2U * outputChannels;
}

}  // namespace

ClipSender::ClipSender(ReaderServices services, const Publication& publication,
                       JStreamAudioWrite& writer, const WriterContext& out,
                       std::uint64_t totalBytes, PublishProgress& progress)
    : s_(services),
      publication_(publication),
      writer_(writer),
      out_(out),
      totalBytes_(totalBytes),
      progress_(progress) {}

SendEnd ClipSender::Send(const ClipPlan& clip) {
    // How much of this clip the server held before; it is passed over, not sent again.
    const std::uint64_t start = out_.dataStart + out_.dataBytes;
    Trace("Entry: breakbytes=%d",
          static_cast<int>(out_.bytesHeld > start ? out_.bytesHeld - start : 0));
    clipBytes_ = 0;
    const auto reader = MakeReader(s_, clip.audioPath, publication_.storedFrames);
    // A refused file is reported by the reader.
    if (reader->Measure() == 0) return SendEnd::kUnreadable;
    const SendEnd end = !publication_.storedFrames ? SendPcm(*reader, clip)
                        : publication_.fast        ? SendDecoded(*reader, clip)
                                                   : SendFrames(*reader, clip);
    if (end == SendEnd::kUnreadable && reader->IsOpen())
        s_.files.report.ShowError(u"This recording is damaged:\n" + clip.audioPath);
    if (end == SendEnd::kDone) Trace("Success: ftpmpbytescnt=%d", static_cast<int>(clipBytes_));
    return end;
}

void ClipSender::ShowSteps(std::uint64_t before, std::uint64_t unitsPerStep) {
    const auto steps = static_cast<std::uint32_t>(allUnits_ / unitsPerStep - before / unitsPerStep);
    if (steps > 0) progress_.Step(steps);
    ShowBytes();
}

void ClipSender::ShowBytes() {
    const std::uint64_t position = std::uint64_t{out_.dataStart} + out_.dataBytes;
    progress_.SetBytes(std::max(position, out_.bytesHeld), totalBytes_);
}

SendEnd ClipSender::SendPcm(JStreamAudioReadFile& reader, const ClipPlan& clip) {
    // The file's own rate: the writer alone converts. It takes the rate from the audio state,
    // which measuring the file has set.
    const PublicationFormat& format = publication_.format;
    const PlaybackFormat output = FormatToRead(reader);
    buffer_.resize(output.BufferBytes(format.shift));
    reader.OpenAt(clip.begin, output);
    for (const PeriodRange& stretch : clip.kept) {
        const bool withTail = clip.takesTail && &stretch == &clip.kept.back();
        reader.SeekPeriod(stretch.begin);
        for (std::uint32_t period = stretch.begin; period < stretch.end || withTail; ++period) {
            const std::uint32_t bytes =
                OutputBytesOfPeriod(reader.FileFormat(), period, output.channels);
            if (bytes == 0 && withTail) break;
            if (progress_.IsCancelled()) return SendEnd::kCancelled;
            if (const SendEnd end = PutPeriod(reader, bytes); end != SendEnd::kDone) return end;
            if (period < stretch.end) progress_.Step(1);
            ShowBytes();
        }
    }
    return SendEnd::kDone;
}

SendEnd ClipSender::PutPeriod(JStreamAudioReadFile& reader, std::uint32_t bytes) {
    if (bytes == 0 || bytes > buffer_.size()) return SendEnd::kUnreadable;
    reader.Get(buffer_);
    if (!reader.IsOpen()) return SendEnd::kUnreadable;
    return PutSamples(bytes);
}

/// A fast publication reads both channels of a stereo recording: a voice on either must be heard.
PlaybackFormat ClipSender::FormatToRead(const JStreamAudioReadFile& reader) {
    const AudioFileFormat& file = reader.FileFormat();
    readChannels_ = publication_.fast ? file.channels : publication_.format.channels;
    return {file.sampleRate, readChannels_};
}

SendEnd ClipSender::PutSamples(std::uint32_t bytes) {
    if (readChannels_ > publication_.format.channels) bytes = MixToMono(bytes);
    writer_.WriteSamples(buffer_.data(), bytes);
    if (!writer_.IsOpen()) return SendEnd::kWriterFailed;
    clipBytes_ += bytes;
    return SendEnd::kDone;
}

/// (left + right) / 2, which cannot overflow, rounded toward zero. The bytes that are left.
std::uint32_t ClipSender::MixToMono(std::uint32_t bytes) {
    for (std::uint32_t at = 0; at + 4 <= bytes; at += 4) {
        const int left = LoadLe<std::int16_t>(&buffer_[at]);
        const int right = LoadLe<std::int16_t>(&buffer_[at + 2]);
        StoreLe(&buffer_[at / 2], static_cast<std::int16_t>((left + right) / 2));
    }
    return bytes / 2;
}

SendEnd ClipSender::SendFrames(JStreamAudioReadFile& reader, const ClipPlan& clip) {
    const std::uint32_t frameBytes = publication_.format.frameBytes;
    const std::uint32_t framesPerBlock = kBlockBytes / frameBytes;
    buffer_.resize(kBlockBytes);
    for (const FrameRange& range : clip.frames) {
        reader.SetPosition(
            static_cast<std::int32_t>(reader.FileFormat().dataOffset + range.first * frameBytes));
        for (std::uint32_t frame = range.first; frame < range.last;) {
            const std::uint32_t count = std::min(framesPerBlock, range.last - frame);
            if (progress_.IsCancelled()) return SendEnd::kCancelled;
            if (const SendEnd end = PutFrames(reader, count); end != SendEnd::kDone) return end;
            frame += count;
        }
    }
    return SendEnd::kDone;
}

SendEnd ClipSender::PutFrames(JStreamAudioReadFile& reader, std::uint32_t frames) {
    const std::uint32_t bytes = frames * publication_.format.frameBytes;
    reader.Read(buffer_.data(), bytes);
    const bool whole = reader.IsOpen() && !reader.Has(JStream::kAtEnd);
    if (!whole || !HoldsFrames(ByteSpan(buffer_).first(bytes))) return SendEnd::kUnreadable;
    writer_.WriteEncoded(buffer_.data(), bytes);
    if (!writer_.IsOpen()) return SendEnd::kWriterFailed;
    const std::uint64_t before = allUnits_;
    allUnits_ += bytes;
    clipBytes_ += bytes;
    ShowSteps(before, kBlockBytes);
    return SendEnd::kDone;
}

SendEnd ClipSender::SendDecoded(JStreamAudioReadFile& reader, const ClipPlan& clip) {
    constexpr std::uint32_t kFramesAtOnce = 10;  // a step of the progress display
    const PlaybackFormat output = FormatToRead(reader);
    buffer_.resize(std::size_t{kFramesAtOnce} * kMp2FrameSamples * 2 * output.channels);
    reader.OpenAt(clip.begin, output);
    // Each range belongs to the stretch of its place: a period is longer than a frame, so that only
    // stretches behind the end of the sound have none.
    for (std::size_t i = 0; i < clip.frames.size(); ++i) {
        reader.SeekPeriod(clip.kept[i].begin);
        for (std::uint32_t frame = clip.frames[i].first; frame < clip.frames[i].last;) {
            const std::uint32_t count = std::min(kFramesAtOnce, clip.frames[i].last - frame);
            if (progress_.IsCancelled()) return SendEnd::kCancelled;
            if (const SendEnd end = PutDecoded(reader, count); end != SendEnd::kDone) return end;
            frame += count;
            const std::uint64_t before = allUnits_;
            allUnits_ += count;
            ShowSteps(before, kFramesAtOnce);
        }
    }
    return SendEnd::kDone;
}

SendEnd ClipSender::PutDecoded(JStreamAudioReadFile& reader, std::uint32_t frames) {
    const std::uint32_t bytes = frames * kMp2FrameSamples * 2 * readChannels_;
    reader.Get(std::span(buffer_).first(bytes));
    if (!reader.IsOpen() || reader.IsDamaged()) return SendEnd::kUnreadable;
    return PutSamples(bytes);
}

bool ClipSender::HoldsFrames(ByteSpan block) const {
    const Mp2Header expected = Mp2Header::ForSettings(s_.audio);
    for (std::size_t at = 0; at < block.size(); at += publication_.format.frameBytes) {
        const Mp2Header header{{block[at], block[at + 1], block[at + 2], block[at + 3]}};
        const bool fits = header.IsLayer2() && header.BitrateIndex() == expected.BitrateIndex() &&
                          header.SamplingBits() == expected.SamplingBits() &&
                          header.Mode() == expected.Mode() && !header.HasPadding();
        if (!fits) return false;
    }
    return true;
}

}  // namespace orma
