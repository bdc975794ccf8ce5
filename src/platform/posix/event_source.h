#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "platform/event_loop.h"
#include "platform/posix/event_descriptor.h"

namespace orma {

/// A handler that an event loop calls, shared by the loop and the handle that its user holds. The
/// handle ends it; the loop drops it later. UI thread.
class EventSource {
  public:
    explicit EventSource(std::function<void()> handler) : handler_(std::move(handler)) {}

    [[nodiscard]] bool IsAlive() const { return alive_; }

    /// The handler may end its own source, and a box within it may let it be entered again.
    void Call() {
        if (!alive_) return;
        ++running_;
        handler_();
        if (--running_ == 0 && !alive_) handler_ = nullptr;
    }

    /// What the handler holds is released now, unless it is the one that runs.
    void End() {
        alive_ = false;
        if (running_ == 0) handler_ = nullptr;
    }

  private:
    std::function<void()> handler_;
    bool alive_ = true;
    int running_ = 0;
};

/// One that any thread asks for.
struct WakeSource : EventSource {
    using EventSource::EventSource;
    std::atomic<bool> signalled = false;
};

/// The handle of a wake-up, for a loop that watches `wake`.
class WakeHandle : public Wakeup {
  public:
    WakeHandle(std::shared_ptr<WakeSource> source, std::shared_ptr<EventDescriptor> wake)
        : source_(std::move(source)), wake_(std::move(wake)) {}
    ~WakeHandle() override { source_->End(); }
    WakeHandle(const WakeHandle&) = delete;
    WakeHandle& operator=(const WakeHandle&) = delete;

    void Signal() noexcept override {
        if (!source_->signalled.exchange(true)) wake_->Write();
    }

  private:
    std::shared_ptr<WakeSource> source_;
    std::shared_ptr<EventDescriptor> wake_;
};

}  // namespace orma
