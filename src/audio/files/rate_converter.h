#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orma {

/// Converts 16-bit sound to 48000 Hz with a 16-tap, 480-phase windowed-sinc interpolation in
/// integer arithmetic. One instance serves one stream: the phase goes on from call to call.
/// Allocation-free. One thread at a time.
///
/// An output sample at phase p (0..47999) reads taps h[k + 480 j] with k = (48000 - p) / 100 from
/// 16 neighbouring inputs: sum of (h * x) >> 4, then >> 11, clipped to 16 bits. After each output
/// the phase grows by the input rate; a wrap at 48000 consumes one input sample.
class RateConverter {
  public:
    static constexpr std::uint32_t kOutputRate = 48000;
    static constexpr std::uint32_t kTaps = 16;

    /// Starts a stream at phase 0. At an input rate of 48000 Hz samples are copied unchanged.
    /// False, and nothing changes, for a rate that is neither 48000 Hz nor in 1..44100 Hz: nearer
    /// to 48000 the taps of a frame's last output would lie behind as many inputs as the frame has
    /// outputs.
    [[nodiscard]] bool Start(std::uint32_t inputRate);

    [[nodiscard]] std::uint32_t InputRate() const { return inputRate_; }

    /// Input samples per channel that Convert looks at for `outputs` samples per channel: at
    /// most 1152 for the 1152 outputs of a frame.
    [[nodiscard]] std::size_t InputNeeded(std::size_t outputs) const;

    /// Makes left.size() output samples per channel from interleaved input of `channels` (1 or 2)
    /// and returns how many input samples per channel were consumed; the caller keeps the rest and
    /// offers it again. `in` holds at least InputNeeded samples per channel. `right` is used for
    /// two channels only and is then as long as `left`.
    [[nodiscard]] std::size_t Convert(std::span<const std::int16_t> in, unsigned channels,
                                      std::span<std::int16_t> left, std::span<std::int16_t> right);

  private:
    std::size_t Run(const std::int16_t* in, std::span<std::int16_t> out,
                    std::uint32_t& phase) const;

    std::uint32_t inputRate_ = 44100;
    std::uint32_t phase_ = 0;
};

}  // namespace orma
