#pragma once

#include <atomic>
#include <cstddef>
#include <span>

#include "base/bytes.h"

namespace orma {

/// Bytes on their way between a driver's thread and the UI thread, either way: one producer, one
/// consumer, no lock. All memory is taken, and touched, by the constructor.
class SoundRing {
  public:
    explicit SoundRing(std::size_t capacityBytes) : memory_(capacityBytes) {}

    /// Producer: appends as many whole blocks of `blockBytes` as fit and returns their bytes. Does
    /// not block, allocate or fail.
    std::size_t Write(ByteSpan from, std::size_t blockBytes) noexcept;

    /// Consumer: bytes that can be read now.
    [[nodiscard]] std::size_t Available() const noexcept;

    /// Consumer: moves up to into.size() bytes out and returns how many.
    std::size_t Read(std::span<std::uint8_t> into) noexcept;

    /// Consumer: drops what can be read now and returns how many bytes that were.
    std::size_t Discard() noexcept;

    /// Consumer: drops what lies before the `written`-th byte that was ever written.
    void DiscardTo(std::size_t written) noexcept;

    /// Bytes ever written, and ever read or dropped. Any thread.
    [[nodiscard]] std::size_t Written() const noexcept {
        return written_.load(std::memory_order_acquire);
    }
    [[nodiscard]] std::size_t Consumed() const noexcept {
        return read_.load(std::memory_order_acquire);
    }

    [[nodiscard]] std::size_t Capacity() const noexcept { return memory_.size(); }

  private:
    Bytes memory_;
    // Bytes ever written and read; each side writes its own count only.
    alignas(64) std::atomic<std::size_t> written_ = 0;
    alignas(64) std::atomic<std::size_t> read_ = 0;
};

}  // namespace orma
