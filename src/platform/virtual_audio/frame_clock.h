#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace orma {

/// The monotonic time, exchangeable for tests.
using SteadyNow = std::function<std::chrono::steady_clock::time_point()>;

/// Counts the sample frames that a sound card would have moved by now. The count is worked out from
/// the start of the run, never summed up, so that it does not drift.
class FrameClock {
  public:
    FrameClock(SteadyNow now, std::uint32_t hz) : now_(std::move(now)), hz_(hz) {}

    void Start() {
        if (!running_) start_ = now_();
        running_ = true;
    }

    void Stop() {
        base_ = Frames();
        running_ = false;
    }

    /// Stops at a count.
    void Set(std::uint64_t frames) {
        running_ = false;
        base_ = frames;
    }

    [[nodiscard]] bool Running() const { return running_; }

    [[nodiscard]] std::uint64_t Frames() const {
        if (!running_) return base_;
        const auto passed =
            std::chrono::duration_cast<std::chrono::microseconds>(now_() - start_).count();
        return base_ + static_cast<std::uint64_t>(passed) * hz_ / 1'000'000;
    }

  private:
    SteadyNow now_;
    std::uint64_t hz_;
    std::chrono::steady_clock::time_point start_;
    std::uint64_t base_ = 0;
    bool running_ = false;
};

}  // namespace orma
