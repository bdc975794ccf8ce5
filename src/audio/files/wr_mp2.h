#pragma once

#include "audio/files/audio_write.h"
#include "audio/files/writer_context.h"

namespace orma {

/// The encoder feed of a writer: what the writer is given as PCM comes back to it as MP2 through
/// WriteEncoded. The encoder itself is shared; it works for one writer at a time. UI thread.
class JStreamWrMP2 {
  public:
    /// `context` outlives the feed.
    explicit JStreamWrMP2(WriterContext& context) : context_(context) {}

    /// Starts encoding PCM of `inputRate` Hz for `writer`, with the channels and the bit rate of
    /// the context. `frames` sees each frame as it enters the output block. False when the encoder
    /// refuses (reported).
    [[nodiscard]] bool StartFeed(JStreamAudioWrite& writer, std::uint32_t inputRate,
                                 Mp2Pipeline::FrameWatch frames = {});

    /// Encodes PCM; does nothing unless started.
    void Feed(const void* pcm, std::uint32_t bytes);

    /// Encodes what is left, zero-padded, and releases the encoder.
    void FlushFeed();

    /// Releases the encoder; what it still holds is dropped.
    void ReleaseFeed();

  private:
    WriterContext& context_;
    JStreamAudioWrite* writer_ = nullptr;  // null: not started, or its output is dropped
    bool feeding_ = false;
};

/// The rate in Hz of the PCM that a recording hands to a take's encoder: of the capturing device,
/// which the recorder has left in `audio`; an S/PDIF card may deliver 48000 like an external
/// recorder.
[[nodiscard]] std::uint32_t RecordingRate(const AudioState& audio);

/// The rate in Hz of the PCM that a publication hands to its writer: of the WAV file being read, or
/// of decoded MP2 frames, which always is 48000.
[[nodiscard]] std::uint32_t PublicationRate(const AudioState& audio);

}  // namespace orma
