#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/bytes.h"

namespace orma {

/// Collects PCM into blocks of 64 KiB, so that storage never sees small writes. Allocation-free.
class PcmStaging {
  public:
    static constexpr std::size_t kBytes = 65536;

    /// Forgets what is staged.
    void Restart() { fill_ = 0; }

    /// Stages `pcm`; every time 65536 bytes are there, `put(ByteSpan)` gets them.
    template <class Put>
    void Add(ByteSpan pcm, Put put) {
        while (!pcm.empty()) {
            const std::size_t count = std::min(pcm.size(), kBytes - fill_);
            std::copy_n(pcm.begin(), count, buffer_.begin() + static_cast<std::ptrdiff_t>(fill_));
            fill_ += count;
            pcm = pcm.subspan(count);
            if (fill_ == kBytes) Flush(put);
        }
    }

    /// Gives `put(ByteSpan)` what is staged, if anything.
    template <class Put>
    void Flush(Put put) {
        if (fill_ > 0) put(ByteSpan(buffer_).first(fill_));
        fill_ = 0;
    }

  private:
    std::array<std::uint8_t, kBytes> buffer_{};
    std::size_t fill_ = 0;
};

}  // namespace orma
