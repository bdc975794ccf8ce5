#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/gathered_writes.h"
#include "audio/files/published_file.h"
#include "audio/files/wr_mp2.h"
#include "audio/files/wr_mp2_file.h"

namespace orma {

/// Kind 9: a publication as a Broadcast-Wave file of MPEG-1 Layer II frames beside the project.
/// Takes PCM to encode, or stored frames as they are through WriteEncoded. UI thread.
class JStreamAudioWriteBWFMP2File : public JStreamAudioWrite,
                                    public JStreamWrMP2File,
                                    public JStreamWrMP2 {
  public:
    /// `context` outlives the writer.
    explicit JStreamAudioWriteBWFMP2File(WriterContext& context);
    ~JStreamAudioWriteBWFMP2File() override;

    [[nodiscard]] bool IsOpen() const override { return JStreamFile::IsOpen(); }
    void Open(const Text& name) override;

    /// Keeps the file under its final name, or leaves nothing: see PublishedFile.
    void Close() override;

    void Finish() override;
    void ReleaseEncoder() override { ReleaseFeed(); }
    void WriteSamples(const void* pcm, std::uint32_t bytes) override;
    void WriteEncoded(const void* data, std::uint32_t bytes) override;

  private:
    WriterContext& context_;
    PublishedFile published_;
    GatheredWrites gathered_;
};

}  // namespace orma
