#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orma {

/// Converts 16-bit sound from a file's rate to the output's (44100 or 48000 Hz), upwards and
/// downwards, with the interpolation table of the recording converter. The same rates copy.
/// One instance serves one stream. Allocation-free. One thread at a time.
class PlaybackConverter {
  public:
    /// Starts a stream. Rates in Hz: 44100, 48000, 88200 or 96000 in; 44100 or 48000 out.
    void Start(std::uint32_t inputRate, std::uint32_t outputRate);

    /// Input samples per channel that Convert may look at for `outputs` samples per channel.
    [[nodiscard]] std::size_t InputNeeded(std::size_t outputs) const;

    /// Makes out.size() / channels samples per channel, interleaved as the input, and returns how
    /// many input samples per channel were consumed. `in` holds InputNeeded samples per channel.
    [[nodiscard]] std::size_t Convert(std::span<const std::int16_t> in, unsigned channels,
                                      std::span<std::int16_t> out);

  private:
    std::uint32_t inputRate_ = 44100;
    std::uint32_t outputRate_ = 44100;
    std::uint64_t phase_ = 0;
};

}  // namespace orma
