#pragma once

#include <array>

#include "audio/files/audio_write.h"
#include "audio/files/published_file.h"
#include "audio/files/rate_converter.h"
#include "audio/files/writer_context.h"

namespace orma {

/// Kind 8: a publication as a Broadcast-Wave file of 48000 Hz 16-bit PCM beside the project.
/// UI thread.
class JStreamAudioWriteBWFWavFile : public JStreamAudioWrite, public JStreamFile {
  public:
    /// `context` outlives the writer.
    explicit JStreamAudioWriteBWFWavFile(WriterContext& context);
    ~JStreamAudioWriteBWFWavFile() override;

    [[nodiscard]] bool IsOpen() const override { return JStreamFile::IsOpen(); }
    void Open(const Text& name) override;

    /// Keeps the file under its final name, or leaves nothing: see PublishedFile.
    void Close() override;

    void Finish() override;

    /// Takes PCM at the present publication rate, 44100 or 48000 Hz. When the rate changes from
    /// clip to clip, the conversion starts afresh with the samples that were held.
    void WriteSamples(const void* pcm, std::uint32_t bytes) override;

  private:
    void ConvertFrame();
    void PutBlock(ByteSpan block);

    WriterContext& context_;
    PublishedFile published_;
    RateConverter converter_;
    std::uint16_t channels_ = 1;
    std::array<std::int16_t, 2 * kMp2FrameSamples> assembler_{};
    std::size_t held_ = 0;  // samples per channel in the assembler
    std::array<std::int16_t, kMp2FrameSamples> left_{};
    std::array<std::int16_t, kMp2FrameSamples> right_{};
    std::array<std::int16_t, 2 * kMp2FrameSamples> interleaved_{};
};

}  // namespace orma
