#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/wr_mp2.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {

/// Kind 3: a recording as MP2 frames that go straight to an FTP server, with no local file. UI
/// thread.
class JStreamAudioWriteFTP : public JStreamAudioWrite, public JStreamWrFTP, public JStreamWrMP2 {
  public:
    /// `context` has FTP services and outlives the writer.
    explicit JStreamAudioWriteFTP(WriterContext& context);
    ~JStreamAudioWriteFTP() override;

    [[nodiscard]] bool IsOpen() const override { return JStreamFTP::IsOpen() && IsConnected(); }
    void Connect() override;
    void Open(const Text& name) override;

    /// Tells the context whether the server has confirmed the whole file.
    void Close() override;

    void ReleaseEncoder() override { ReleaseFeed(); }
    void WriteSamples(const void* pcm, std::uint32_t bytes) override { Feed(pcm, bytes); }
    void WriteEncoded(const void* data, std::uint32_t bytes) override { Write(data, bytes); }

  private:
    WriterContext& context_;
};

}  // namespace orma
