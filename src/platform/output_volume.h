#pragma once

#include <atomic>
#include <cstdint>
#include <span>

namespace orma {

/// The volume of the outputs of one sound system, applied by the adapter to the samples themselves:
/// the volume of a sound card belongs to the desktop. Set on the UI thread, applied on any.
class OutputVolume {
  public:
    /// 0..65535 for each side; 65535 passes samples unchanged.
    void Set(std::uint16_t left, std::uint16_t right) noexcept {
        sides_.store(std::uint32_t{right} << 16 | left, std::memory_order_relaxed);
    }

    /// Scales interleaved samples of `channels` in place, whole frames; mono follows the left side.
    /// Does not block or allocate.
    void Apply(std::span<std::int16_t> samples, unsigned channels) const noexcept {
        const std::uint32_t sides = sides_.load(std::memory_order_relaxed);
        if (sides == kUnchanged) return;
        const std::int64_t scale[] = {sides & 0xFFFFU, sides >> 16};
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] =
                static_cast<std::int16_t>(samples[i] * scale[i % channels == 0 ? 0 : 1] / 65535);
    }

  private:
    static constexpr std::uint32_t kUnchanged = 0xFFFFFFFF;

    std::atomic<std::uint32_t> sides_ = kUnchanged;
};

}  // namespace orma
