#include "platform/sound_ring.h"

#include <algorithm>

namespace orma {

std::size_t SoundRing::Write(ByteSpan from, std::size_t blockBytes) noexcept {
    const std::size_t written = written_.load(std::memory_order_relaxed);
    const std::size_t room = memory_.size() - (written - read_.load(std::memory_order_acquire));
    const std::size_t count = std::min(from.size(), room) / blockBytes * blockBytes;
    const std::size_t at = written % memory_.size();
    const std::size_t first = std::min(count, memory_.size() - at);
    std::copy_n(from.begin(), first, memory_.data() + at);
    std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(first), count - first, memory_.data());
    written_.store(written + count, std::memory_order_release);
    return count;
}

std::size_t SoundRing::Available() const noexcept {
    return written_.load(std::memory_order_acquire) - read_.load(std::memory_order_relaxed);
}

std::size_t SoundRing::Read(std::span<std::uint8_t> into) noexcept {
    const std::size_t read = read_.load(std::memory_order_relaxed);
    const std::size_t count = std::min(into.size(), Available());
    const std::size_t at = read % memory_.size();
    const std::size_t first = std::min(count, memory_.size() - at);
    std::copy_n(memory_.data() + at, first, into.begin());
    std::copy_n(memory_.data(), count - first, into.begin() + static_cast<std::ptrdiff_t>(first));
    read_.store(read + count, std::memory_order_release);
    return count;
}

std::size_t SoundRing::Discard() noexcept {
    const std::size_t dropped = Available();
    read_.fetch_add(dropped, std::memory_order_release);
    return dropped;
}

void SoundRing::DiscardTo(std::size_t written) noexcept {
    if (read_.load(std::memory_order_relaxed) < written)
        read_.store(written, std::memory_order_release);
}

}  // namespace orma
