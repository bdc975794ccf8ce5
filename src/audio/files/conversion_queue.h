#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "audio/files/playback_converter.h"

namespace orma {

/// The sound that a reader has taken from its file and not yet delivered, and its way to the
/// output: fitted to the output's channels when it comes in, converted to the output's rate when it
/// goes out. Allocates in Start alone. UI thread.
class ConversionQueue {
  public:
    /// Starts a stream with nothing held. Rates in Hz. `step` is the most samples per channel that
    /// are converted at a time, `refill` the most that are appended at a time, `least` how many are
    /// held at least before each step, also when it needs fewer.
    void Start(std::uint32_t fileRate, std::uint32_t outputRate, unsigned outputChannels,
               std::size_t step, std::size_t refill, std::size_t least = 0);

    /// Drops what is held and starts the conversion afresh.
    void Clear();

    /// Holds interleaved samples of a file of `channels`. A mono file plays on both outputs; of a
    /// stereo file a mono output gets the left channel, unmixed, so that nothing cancels out.
    void Append(std::span<const std::int16_t> samples, unsigned channels);

    /// Holds `count` samples per channel of silence.
    void AppendSilence(std::size_t count);

    /// Fills `buffer` with interleaved 16-bit samples, before Start with silence. Whenever more is
    /// needed, calls `refill(missing)`, which appends at least one sample per channel and at most
    /// the `refill` of Start; `missing` says how many would do.
    template <class Refill>
    void Fill(std::span<std::uint8_t> buffer, Refill refill) {
        const std::size_t sampleBytes = channels_ * sizeof(std::int16_t);
        while (step_ > 0 && buffer.size() >= sampleBytes) {
            const std::size_t count = std::min(step_, buffer.size() / sampleBytes);
            const std::size_t needed = std::max(converter_.InputNeeded(count), least_);
            while (Held() < needed)
                refill(needed - Held());
            const std::size_t used = converter_.Convert(
                held_, channels_, std::span(converted_).first(count * channels_));
            held_.erase(held_.begin(), held_.begin() + static_cast<std::ptrdiff_t>(
                                                           std::min(used, Held()) * channels_));
            std::memcpy(buffer.data(), converted_.data(), count * sampleBytes);
            buffer = buffer.subspan(count * sampleBytes);
        }
        std::ranges::fill(buffer, std::uint8_t{0});
    }

  private:
    [[nodiscard]] std::size_t Held() const { return held_.size() / channels_; }

    PlaybackConverter converter_;
    std::uint32_t fileRate_ = 44100;
    std::uint32_t outputRate_ = 44100;
    unsigned channels_ = 1;
    std::size_t step_ = 0;
    std::size_t least_ = 0;
    std::vector<std::int16_t> held_;
    std::vector<std::int16_t> converted_;
};

}  // namespace orma
