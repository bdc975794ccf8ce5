#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/wr_mp2.h"
#include "audio/files/wr_mp2_file.h"

namespace orma {

/// Kind 2: a recording as a file of MP2 frames. UI thread.
class JStreamAudioWriteMP2File : public JStreamAudioWrite,
                                 public JStreamWrMP2File,
                                 public JStreamWrMP2 {
  public:
    explicit JStreamAudioWriteMP2File(WriterContext& context);
    ~JStreamAudioWriteMP2File() override;

    [[nodiscard]] bool IsOpen() const override { return IsHealthy(); }
    void Open(const Text& name) override;
    void Close() override;
    void WriteSamples(const void* pcm, std::uint32_t bytes) override { Feed(pcm, bytes); }
    void WriteEncoded(const void* data, std::uint32_t bytes) override;

  private:
    const AudioState& audio_;
};

}  // namespace orma
