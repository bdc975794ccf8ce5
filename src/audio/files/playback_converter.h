#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orma {

/// Converts 16-bit sound from a file's rate to the output's, upwards and downwards, with the
/// interpolation kernel of the recording converter. One instance serves one stream.
/// Allocation-free. One thread at a time.
///
/// With both rates divided by their greatest common divisor, I and O, output n lies n * I / O input
/// samples behind the stream's start: it reads from input floor(n * I / O) on, at the phase
/// p = n * I mod O. Whole numbers carry both, so nothing drifts. The O phases have a row of weights
/// each, so an output lies exactly at its place. Upwards a row has 16 weights; downwards the kernel
/// is stretched by I / O, lest sound above half the output rate fold back, and a row has
/// 2 * ceil(8 * I / O). A row adds up to 65536, and an output sample is
/// (sum of weight * input + 32768) >> 16, clipped to 16 bits. Like the recording converter it
/// leads: the first output lies at input sample 7 (downwards ceil(8 * I / O) - 1).
class PlaybackConverter {
  public:
    /// Starts a stream. Rates in Hz: 44100, 48000, 88200 or 96000 in; 44100 or 48000 out. The same
    /// rates copy, and so do rates that it does not know.
    void Start(std::uint32_t inputRate, std::uint32_t outputRate);

    /// Input samples per channel that Convert looks at for `outputs` samples per channel.
    [[nodiscard]] std::size_t InputNeeded(std::size_t outputs) const;

    /// Makes out.size() / channels samples per channel, interleaved as the input, and returns how
    /// many input samples per channel were consumed; the caller offers the rest again. `in` holds
    /// InputNeeded samples per channel.
    [[nodiscard]] std::size_t Convert(std::span<const std::int16_t> in, unsigned channels,
                                      std::span<std::int16_t> out);

  private:
    static constexpr std::uint32_t kMaxPhases = 160;  // 44100 to 48000
    static constexpr std::uint32_t kMaxTaps = 36;     // 96000 to 44100

    [[nodiscard]] bool Copies() const { return taps_ == 0; }
    void BuildRows();

    std::uint32_t inputStep_ = 1;   // I
    std::uint32_t outputStep_ = 1;  // O
    std::uint32_t taps_ = 0;        // weights a row; 0: the samples are copied
    std::uint32_t phase_ = 0;       // 0..O - 1
    std::array<std::array<std::int32_t, kMaxTaps>, kMaxPhases> rows_{};
};

}  // namespace orma
