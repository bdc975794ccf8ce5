#pragma once

#include <cstdint>

#include "audio/files/audio_read.h"
#include "audio/files/audio_write.h"
#include "base/bytes.h"
#include "publish/clip_plan.h"
#include "publish/coding_history.h"
#include "publish/progress.h"

namespace orma {

/// How sending a clip ended.
enum class SendEnd {
    kDone,
    kCancelled,
    kUnreadable,    // the recording; reported
    kWriterFailed,  // reported by the writer's stream
};

struct SendResult {
    SendEnd end = SendEnd::kDone;
    std::uint64_t bytes = 0;  // of the clip, handed to the writer
};

/// Sends the sound of clips to a writer: PCM period by period through the WAV reader, stored MP2
/// frames unchanged. Polls for cancel and steps the progress display. All references outlive it.
/// UI thread.
class ClipSender {
  public:
    /// MP2 goes out in blocks of whole frames of at most this size; the progress display of an MP2
    /// publication counts such blocks.
    static constexpr std::uint32_t kBlockBytes = 16384;

    ClipSender(ReaderServices services, const PublicationFormat& format, JStreamAudioWrite& writer,
               PublishProgress& progress);

    /// Sends what the plan keeps of one clip, to its end or until something ends it.
    [[nodiscard]] SendResult Send(const ClipPlan& clip);

  private:
    [[nodiscard]] SendEnd SendPcm(JStreamAudioReadFile& reader, const ClipPlan& clip);
    [[nodiscard]] SendEnd SendFrames(JStreamAudioReadFile& reader, const ClipPlan& clip);
    [[nodiscard]] SendEnd PutPeriod(JStreamAudioReadFile& reader, std::uint32_t bytes);
    [[nodiscard]] SendEnd PutFrames(JStreamAudioReadFile& reader, std::uint32_t frames);
    [[nodiscard]] bool HoldsFrames(ByteSpan block) const;

    ReaderServices s_;
    const PublicationFormat& format_;
    JStreamAudioWrite& writer_;
    PublishProgress& progress_;
    Bytes buffer_;
    std::uint64_t clipBytes_ = 0;  // of the clip being sent
    std::uint64_t allBytes_ = 0;   // of all clips so far
};

}  // namespace orma
