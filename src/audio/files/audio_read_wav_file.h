#pragma once

#include <vector>

#include "audio/files/audio_read.h"
#include "audio/files/conversion_queue.h"

namespace orma {

/// Reads PCM WAV files of 16 bits and more at 44100, 48000, 88200 or 96000 Hz. UI thread.
class JStreamAudioReadWavFile : public JStreamAudioReadFile {
  public:
    using JStreamAudioReadFile::JStreamAudioReadFile;

    void OpenAt(std::uint32_t period, const PlaybackFormat& output) override;

    /// Refuses with "Empty file", "Only mono or stereo allowed.", "Wrong sample-rate", "Only 16 or
    /// 24-bits\nsamples allowed." or "WavOpenFile No Data". 20-bit samples lie in 3 bytes, and so
    /// on; floating-point samples are refused as a wrong number of bits, for they would be heard as
    /// noise.
    [[nodiscard]] std::uint32_t Measure() override;

    void SeekPeriod(std::uint32_t period) override;

    /// The same as SeekPeriod: PCM has no decoder.
    std::uint32_t PositionAt(std::uint32_t period) override;

    /// Silence follows the last sample of the data.
    void Get(std::span<std::uint8_t> buffer) override;

  private:
    [[nodiscard]] std::size_t SampleBytes() const { return (format_.bitsPerSample + 7U) / 8U; }
    [[nodiscard]] std::size_t FrameBytes() const { return SampleBytes() * format_.channels; }
    void Refill(std::size_t missing);

    ConversionQueue queue_;
    std::uint64_t position_ = 0;  // bytes from the file's start
    std::vector<std::uint8_t> raw_;
    std::vector<std::int16_t> samples_;
};

}  // namespace orma
