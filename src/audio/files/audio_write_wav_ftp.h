#pragma once

#include "audio/files/live_upload.h"
#include "audio/files/wr_wav_file.h"

namespace orma {

/// Kind 4: a recording as a plain WAV file, uploaded meanwhile as MP2 frames. UI thread.
class JStreamAudioWriteWavFTP : public JStreamAudioWrite, public LiveUpload {
  public:
    /// `context` has live FTP services and outlives the writer.
    explicit JStreamAudioWriteWavFTP(WriterContext& context);
    ~JStreamAudioWriteWavFTP() override;

    /// The health of the take and of its upload.
    [[nodiscard]] bool IsOpen() const override { return local_.IsHealthy() && IsLiveHealthy(); }
    void Connect() override { ConnectLive(); }
    void Open(const Text& name) override;
    void Close() override;
    void WriteSamples(const void* pcm, std::uint32_t bytes) override;
    void WriteEncoded(const void* data, std::uint32_t bytes) override { Write(data, bytes); }

  private:
    void FeedUpperBytes(ByteSpan pcm);

    WriterContext& context_;
    const AudioState& audio_;
    JStreamWrWavFile local_;
};

}  // namespace orma
