#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/wr_wav_file.h"

namespace orma {

/// Kind 1: a recording as a plain WAV file. UI thread.
class JStreamAudioWriteWavFile : public JStreamAudioWrite, public JStreamWrWavFile {
  public:
    explicit JStreamAudioWriteWavFile(WriterContext& context) : JStreamWrWavFile(context) {}
    ~JStreamAudioWriteWavFile() override { CloseTake(); }

    [[nodiscard]] bool IsOpen() const override { return IsHealthy(); }
    void Open(const Text& name) override { OpenTake(name); }
    void Close() override { CloseTake(); }
    void WriteSamples(const void* pcm, std::uint32_t bytes) override {
        WriteTake({static_cast<const std::uint8_t*>(pcm), bytes});
    }
};

}  // namespace orma
