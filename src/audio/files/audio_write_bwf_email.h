#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/wr_mp2.h"
#include "stream/jstream_email.h"

namespace orma {

/// Kind 7: a publication as Broadcast-Wave of MPEG-1 Layer II frames, attached to a mail. The bytes
/// are those of an upload. Takes PCM to encode, or stored frames as they are through WriteEncoded.
/// UI thread.
class JStreamAudioWriteBWFEMAIL : public JStreamAudioWrite,
                                  public JStreamEMAIL,
                                  public JStreamWrMP2 {
  public:
    /// `context` has mail services and outlives the writer.
    explicit JStreamAudioWriteBWFEMAIL(WriterContext& context);
    ~JStreamAudioWriteBWFEMAIL() override;

    [[nodiscard]] bool IsOpen() const override { return Has(kGood | kOpen); }

    /// Begins the context's message; the attachment has the name that stands there.
    void Open(const Text& name) override;

    /// Flushes the encoder and appends the trailing chunks, which the head counts.
    void Finish() override;

    /// Ends the message when it is finished, and tells the context whether it was taken; otherwise
    /// drops it, and nothing is delivered.
    void Close() override;

    void ReleaseEncoder() override { ReleaseFeed(); }
    void WriteSamples(const void* pcm, std::uint32_t bytes) override;
    void WriteEncoded(const void* data, std::uint32_t bytes) override;

  private:
    WriterContext& context_;
    bool finished_ = false;
};

}  // namespace orma
