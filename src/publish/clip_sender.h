#pragma once

#include <cstdint>

#include "audio/files/audio_read.h"
#include "audio/files/audio_write.h"
#include "audio/files/writer_context.h"
#include "base/bytes.h"
#include "publish/clip_plan.h"
#include "publish/progress.h"
#include "publish/publication.h"

namespace orma {

/// How sending a clip ended.
enum class SendEnd {
    kDone,
    kCancelled,
    kUnreadable,    // the recording; reported
    kWriterFailed,  // reported by the writer's stream
};

/// Sends the sound of clips to a writer: PCM period by period through the WAV reader, stored MP2
/// frames unchanged, or decoded for a fast publication, which mixes stereo into one
/// channel. Polls for cancel, steps the progress
/// display and tells it the bytes. All references outlive it. UI thread.
class ClipSender {
  public:
    /// MP2 goes out in blocks of whole frames of at most this size; the progress display of an MP2
    /// publication counts such blocks.
    static constexpr std::uint32_t kBlockBytes = 16384;

    /// `out` counts what `writer` puts out, `totalBytes` is what the whole file will have.
    ClipSender(ReaderServices services, const Publication& publication, JStreamAudioWrite& writer,
               const WriterContext& out, std::uint64_t totalBytes, PublishProgress& progress);

    /// Sends what the plan keeps of one clip, to its end or until something ends it.
    [[nodiscard]] SendEnd Send(const ClipPlan& clip);

  private:
    [[nodiscard]] SendEnd SendPcm(JStreamAudioReadFile& reader, const ClipPlan& clip);
    [[nodiscard]] SendEnd SendFrames(JStreamAudioReadFile& reader, const ClipPlan& clip);
    [[nodiscard]] SendEnd SendDecoded(JStreamAudioReadFile& reader, const ClipPlan& clip);
    [[nodiscard]] SendEnd PutDecoded(JStreamAudioReadFile& reader, std::uint32_t frames);
    [[nodiscard]] SendEnd PutPeriod(JStreamAudioReadFile& reader, std::uint32_t bytes);
    [[nodiscard]] PlaybackFormat FormatToRead(const JStreamAudioReadFile& reader);
    [[nodiscard]] SendEnd PutSamples(std::uint32_t bytes);
    [[nodiscard]] std::uint32_t MixToMono(std::uint32_t bytes);
    [[nodiscard]] SendEnd PutFrames(JStreamAudioReadFile& reader, std::uint32_t frames);
    [[nodiscard]] bool HoldsFrames(ByteSpan block) const;
    void ShowSteps(std::uint64_t before, std::uint64_t unitsPerStep);
    void ShowBytes();

    ReaderServices s_;
    const Publication& publication_;
    JStreamAudioWrite& writer_;
    const WriterContext& out_;
    std::uint64_t totalBytes_;
    PublishProgress& progress_;
    Bytes buffer_;
    std::uint16_t readChannels_ = 1;  // of the samples in the buffer
    std::uint64_t clipBytes_ = 0;     // of the clip being sent, handed to the writer
    std::uint64_t allUnits_ = 0;      // of all clips so far: bytes, or frames that were decoded
};

}  // namespace orma
