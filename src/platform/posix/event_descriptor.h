#pragma once

#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace orma {

/// An eventfd by which any thread wakes the thread of an event loop. It is shared by all who may
/// still signal it.
class EventDescriptor {
  public:
    /// How often a loop looks, in milliseconds, where there is no descriptor to wait for.
    static constexpr int kLookWithoutMs = 10;

    /// Without one where the system has no descriptor left.
    EventDescriptor() : descriptor_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~EventDescriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    EventDescriptor(const EventDescriptor&) = delete;
    EventDescriptor& operator=(const EventDescriptor&) = delete;

    /// To be polled for reading; negative: none.
    [[nodiscard]] int Get() const { return descriptor_; }

    /// Any thread.
    void Write() noexcept {
        const std::uint64_t one = 1;
        // It can only fail when the counter is full, and then the reader wakes anyway.
        [[maybe_unused]] const ssize_t written = ::write(descriptor_, &one, sizeof one);
    }

    /// It is not readable until the next Write.
    void Drain() noexcept {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t got = ::read(descriptor_, &count, sizeof count);
    }

  private:
    int descriptor_;
};

}  // namespace orma
