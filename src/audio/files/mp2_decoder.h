#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "audio/files/audio_state.h"
#include "audio/files/mp2_header.h"
#include "base/bytes.h"
#include "platform/storage.h"

namespace orma {

/// Decodes one MPEG-1 Layer II frame at a time into 16-bit sound. The frame buffer holds the four
/// header bytes, the frame's rest and the next frame's header, which a frame decoder needs to see.
/// Only frames that a checked header describes reach the decoding library. Diagnostics, one line a
/// frame that could not be decoded, are appended to "mp2dec.txt": the first 100 of each start, lest
/// a file of garbage fill the disk. UI thread.
class Mp2Decoder {
  public:
    /// `audio` supplies the bit rate of the setting; `diagnosticsPath` names "mp2dec.txt" in the
    /// program's folder (empty: no diagnostics). All outlive the decoder.
    Mp2Decoder(const AudioState& audio, Storage& storage, Text diagnosticsPath);
    ~Mp2Decoder();
    Mp2Decoder(const Mp2Decoder&) = delete;
    Mp2Decoder& operator=(const Mp2Decoder&) = delete;

    /// Starts at a frame whose header is given. Does nothing while active.
    void Mp2DecoderStart(const Mp2Header& header);

    /// Goes on at another frame, whose header takes the place of the one that followed the last
    /// frame; what the filters hold is kept. Does nothing while not active.
    void GoOnAt(const Mp2Header& header);

    /// Where the caller puts FrameBytes() bytes: the frame's rest and the next frame's header
    /// (zeros behind the last frame). Empty while not active.
    [[nodiscard]] std::span<std::uint8_t> FrameSpace();

    /// Length in bytes of the frame that is to be decoded next: of its header, or of the bit-rate
    /// setting while there is none or it is no Layer II header.
    [[nodiscard]] std::uint32_t FrameBytes() const;

    /// Decodes the frame in the buffer into `out` (room for 1152 samples of two channels,
    /// interleaved when stereo) and takes the next header, also after a frame that failed, so that
    /// damage costs no more than what it touches. Returns the samples per channel: 1152, or 0, with
    /// `channels` unchanged, when the frame could not be decoded or the decoder is not active. The
    /// channels are the frame's own, whatever the setting says.
    [[nodiscard]] std::size_t Mp2DecodeFrame(std::span<std::int16_t> out, unsigned& channels);

    /// Ends decoding and releases the library's state.
    void Mp2DecoderFinish();

    [[nodiscard]] bool IsActive() const { return state_ != nullptr; }

  private:
    struct State;

    [[nodiscard]] bool DecodeInSpace();
    void Log(const std::string& line);

    const AudioState& audio_;
    Storage& storage_;
    Text diagnosticsPath_;
    int logLines_ = 0;
    std::unique_ptr<State> state_;
};

}  // namespace orma
