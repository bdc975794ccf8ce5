#include "platform/posix/posix_event_loop.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>

#include <poll.h>

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;

}  // namespace

struct PosixEventLoop::TimerSource : EventSource {
    using EventSource::EventSource;
    std::chrono::milliseconds period{};
    SteadyClock::time_point due;
};

struct PosixEventLoop::WatchSource : EventSource {
    using EventSource::EventSource;
    int descriptor = -1;
    bool ready = false;
};

template <class Handle>
class PosixEventLoop::SourceHandle : public Handle {
  public:
    explicit SourceHandle(std::shared_ptr<EventSource> source) : source_(std::move(source)) {}
    ~SourceHandle() override { source_->End(); }
    SourceHandle(const SourceHandle&) = delete;
    SourceHandle& operator=(const SourceHandle&) = delete;

  private:
    std::shared_ptr<EventSource> source_;
};

PosixEventLoop::PosixEventLoop() : wake_(std::make_shared<EventDescriptor>()) {}

PosixEventLoop::~PosixEventLoop() = default;

void PosixEventLoop::Post(std::function<void()> task) {
    tasks_.push_back(std::move(task));
}

std::unique_ptr<Timer> PosixEventLoop::StartTimer(std::uint32_t periodMs,
                                                  std::function<void()> tick) {
    auto source = std::make_shared<TimerSource>(std::move(tick));
    source->period = std::chrono::milliseconds(std::max(periodMs, 1u));
    source->due = SteadyClock::now() + source->period;
    timers_.push_back(source);
    return std::make_unique<SourceHandle<Timer>>(std::move(source));
}

std::unique_ptr<Wakeup> PosixEventLoop::CreateWakeup(std::function<void()> handler) {
    auto source = std::make_shared<WakeSource>(std::move(handler));
    wakeups_.push_back(source);
    return std::make_unique<WakeHandle>(std::move(source), wake_);
}

std::unique_ptr<DescriptorWatch> PosixEventLoop::WatchReadable(int descriptor,
                                                               std::function<void()> handler) {
    auto source = std::make_shared<WatchSource>(std::move(handler));
    source->descriptor = descriptor;
    watches_.push_back(source);
    return std::make_unique<SourceHandle<DescriptorWatch>>(std::move(source));
}

int PosixEventLoop::Run() {
    while (!quit_) {
        RunTasks();
        if (quit_) break;
        Wait();
        RunWatches();
        RunWakeups();
        RunTimers();
    }
    quit_ = false;
    return code_;
}

void PosixEventLoop::Quit(int code) {
    quit_ = true;
    code_ = code;
}

void PosixEventLoop::Call(EventSource& source) {
    if (!quit_) source.Call();
}

/// Runs the tasks that are posted now; those that they post come with the next turn.
void PosixEventLoop::RunTasks() {
    for (std::size_t left = tasks_.size(); left > 0 && !quit_; --left) {
        const auto task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
}

int PosixEventLoop::WaitMs() const {
    // Of signals that a Quit left behind the eventfd tells no more.
    const bool signalled =
        std::ranges::any_of(wakeups_, [](const auto& wakeup) { return wakeup->signalled.load(); });
    if (signalled || !tasks_.empty()) return 0;
    std::optional<SteadyClock::time_point> due;
    for (const auto& timer : timers_)
        if (timer->IsAlive() && (!due || timer->due < *due)) due = timer->due;
    int waitMs = -1;
    if (due) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - SteadyClock::now());
        waitMs = static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(
            left.count(), 0, std::numeric_limits<int>::max()));
    }
    constexpr int kLook = EventDescriptor::kLookWithoutMs;
    if (wake_->Get() < 0 && (waitMs < 0 || waitMs > kLook)) waitMs = kLook;
    return waitMs;
}

void PosixEventLoop::Wait() {
    const auto dead = [](const auto& source) { return !source->IsAlive(); };
    std::erase_if(timers_, dead);
    std::erase_if(wakeups_, dead);
    std::erase_if(watches_, dead);

    polled_.clear();
    polled_.push_back({wake_->Get(), POLLIN, 0});
    for (const auto& watch : watches_)
        polled_.push_back({watch->descriptor, POLLIN, 0});
    if (::poll(polled_.data(), polled_.size(), WaitMs()) <= 0) {
        // Time-out, or a signal handler ran: no descriptor's state is known.
        for (const auto& watch : watches_)
            watch->ready = false;
        return;
    }
    if (polled_[0].revents != 0) wake_->Drain();
    for (std::size_t i = 0; i < watches_.size(); ++i)
        watches_[i]->ready = polled_[i + 1].revents != 0;
}

void PosixEventLoop::RunWatches() {
    // Handlers may add sources: by index, with a copy that keeps the running one.
    for (std::size_t i = 0, count = watches_.size(); i < count; ++i) {
        const std::shared_ptr<WatchSource> watch = watches_[i];
        if (watch->ready) Call(*watch);
    }
}

void PosixEventLoop::RunWakeups() {
    for (std::size_t i = 0, count = wakeups_.size(); i < count; ++i) {
        const std::shared_ptr<WakeSource> wakeup = wakeups_[i];
        if (!quit_ && wakeup->signalled.exchange(false)) Call(*wakeup);
    }
}

void PosixEventLoop::RunTimers() {
    const auto now = SteadyClock::now();
    const auto earlier = [](const auto& a, const auto& b) { return a->due < b->due; };
    while (!timers_.empty()) {
        const std::shared_ptr<TimerSource> timer =
            *std::min_element(timers_.begin(), timers_.end(), earlier);
        if (timer->due > now) break;
        timer->due += timer->period * ((now - timer->due) / timer->period + 1);
        Call(*timer);
    }
}

}  // namespace orma
