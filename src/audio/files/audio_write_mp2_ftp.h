#pragma once

#include "audio/files/live_upload.h"
#include "audio/files/wr_mp2_file.h"

namespace orma {

/// Kind 5: a recording as a file of MP2 frames, uploaded meanwhile. UI thread.
class JStreamAudioWriteMP2FTP : public JStreamAudioWrite, public LiveUpload {
  public:
    /// `context` has live FTP services and outlives the writer.
    explicit JStreamAudioWriteMP2FTP(WriterContext& context);
    ~JStreamAudioWriteMP2FTP() override;

    /// The health of the take and of its upload.
    [[nodiscard]] bool IsOpen() const override { return local_.IsHealthy() && IsLiveHealthy(); }
    void Connect() override { ConnectLive(); }
    void Open(const Text& name) override;
    void Close() override;
    void WriteSamples(const void* pcm, std::uint32_t bytes) override { Feed(pcm, bytes); }

    /// The take first, whatever the network does.
    void WriteEncoded(const void* data, std::uint32_t bytes) override;

  private:
    const AudioState& audio_;
    JStreamWrMP2File local_;
};

}  // namespace orma
