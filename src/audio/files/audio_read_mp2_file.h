#pragma once

#include <array>

#include "audio/files/audio_read.h"
#include "audio/files/conversion_queue.h"

namespace orma {

/// Reads MPEG-1 Layer II files of the present bit-rate and stereo settings at 48000 Hz, bare or in
/// RIFF. All frames have the setting's length, so a frame's place follows from its number; damage
/// costs the frames it touches and moves nothing. UI thread.
class JStreamAudioReadMP2File : public JStreamAudioReadFile {
  public:
    using JStreamAudioReadFile::JStreamAudioReadFile;
    ~JStreamAudioReadMP2File() override;

    void OpenAt(std::uint32_t period, const PlaybackFormat& output) override;
    void CloseReader() override;

    /// Refuses with "Empty file", "No mp2 file", "Wrong bitrate.", "Wrong sample-rate." or "Wrong
    /// number of channels". The length is one period short of the data, which the last frames may
    /// not fill.
    [[nodiscard]] std::uint32_t Measure() override;

    void SeekPeriod(std::uint32_t period) override;

    /// Leaves the file at the first byte of the frame that holds `period`, for copying stored
    /// frames or for decoding to go on there, and returns that frame's index.
    std::uint32_t PositionAt(std::uint32_t period) override;

    /// Frames that cannot be decoded and what follows the last one are silence.
    void Get(std::span<std::uint8_t> buffer) override;

  private:
    [[nodiscard]] Mp2Header ReadHeader();
    void StartDecoder();
    void EndDecoder();
    void MoveToFrame(std::uint32_t frame);
    [[nodiscard]] bool DecodeFrame();

    ConversionQueue queue_;
    std::uint32_t frameBytes_ = 0;
    std::uint32_t frameCount_ = 0;
    std::uint32_t frame_ = 0;   // to be read next
    bool atHeader_ = true;      // the file stands at that frame's header, not behind it
    bool ownsDecoder_ = false;  // decoding was started for this file
    std::array<std::int16_t, 2 * kMp2FrameSamples> decoded_{};
};

}  // namespace orma
