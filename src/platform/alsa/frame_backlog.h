#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <span>

#include "base/bytes.h"

namespace orma {

/// Bytes between the capture thread and the UI thread: one writer, one reader, no lock. All memory
/// is taken by the constructor.
class FrameBacklog {
  public:
    explicit FrameBacklog(std::size_t bytes) : memory_(bytes) {}

    /// Writer: appends as many whole blocks of `blockBytes` as fit; returns their bytes.
    std::size_t Write(ByteSpan from, std::size_t blockBytes) {
        const std::size_t written = written_.load(std::memory_order_relaxed);
        const std::size_t room = memory_.size() - (written - read_.load(std::memory_order_acquire));
        const std::size_t count = std::min(from.size(), room) / blockBytes * blockBytes;
        for (std::size_t done = 0; done < count;) {
            const std::size_t at = (written + done) % memory_.size();
            const std::size_t piece = std::min(count - done, memory_.size() - at);
            std::copy_n(from.data() + done, piece, memory_.data() + at);
            done += piece;
        }
        written_.store(written + count, std::memory_order_release);
        return count;
    }

    /// Reader: bytes that are there.
    [[nodiscard]] std::size_t Available() const {
        return written_.load(std::memory_order_acquire) - read_.load(std::memory_order_relaxed);
    }

    /// Reader: fills `into`, which is no larger than Available.
    void Read(std::span<std::uint8_t> into) {
        const std::size_t read = read_.load(std::memory_order_relaxed);
        for (std::size_t done = 0; done < into.size();) {
            const std::size_t at = (read + done) % memory_.size();
            const std::size_t piece = std::min(into.size() - done, memory_.size() - at);
            std::copy_n(memory_.data() + at, piece, into.data() + done);
            done += piece;
        }
        read_.store(read + into.size(), std::memory_order_release);
    }

  private:
    Bytes memory_;
    std::atomic<std::size_t> written_ = 0;  // bytes ever
    std::atomic<std::size_t> read_ = 0;
};

}  // namespace orma
