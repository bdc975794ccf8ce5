#include "platform/posix/posix_event_loop.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <optional>

#include <poll.h>

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// How often wake-ups are looked at when the system has no descriptor left for the eventfd.
constexpr int kWithoutEventMs = 10;

}  // namespace

/// What a handle and the loop share. The handle's end marks it dead; the loop drops it later.
struct PosixEventLoop::Source {
    std::function<void()> handler;
    bool alive = true;
    bool running = false;
};

struct PosixEventLoop::TimerSource : Source {
    std::chrono::milliseconds period{};
    SteadyClock::time_point due;
};

struct PosixEventLoop::WatchSource : Source {
    int descriptor = -1;
    bool ready = false;
};

struct PosixEventLoop::WakeSource : Source {
    std::atomic<bool> signalled = false;
};

template <class Handle, class SourceType>
class PosixEventLoop::SourceHandle : public Handle {
  public:
    explicit SourceHandle(std::shared_ptr<SourceType> source) : source_(std::move(source)) {}
    ~SourceHandle() override {
        source_->alive = false;
        // What the handler holds is released now, unless it is the one that runs.
        if (!source_->running) source_->handler = nullptr;
    }

  protected:
    std::shared_ptr<SourceType> source_;
};

class PosixEventLoop::WakeHandle : public SourceHandle<Wakeup, WakeSource> {
  public:
    WakeHandle(std::shared_ptr<WakeSource> source, std::shared_ptr<EventDescriptor> wake)
        : SourceHandle(std::move(source)), wake_(std::move(wake)) {}

    void Signal() noexcept override {
        if (!source_->signalled.exchange(true)) wake_->Write();
    }

  private:
    std::shared_ptr<EventDescriptor> wake_;
};

PosixEventLoop::PosixEventLoop() : wake_(std::make_shared<EventDescriptor>()) {}

PosixEventLoop::~PosixEventLoop() = default;

void PosixEventLoop::Post(std::function<void()> task) {
    tasks_.push_back(std::move(task));
}

std::unique_ptr<Timer> PosixEventLoop::StartTimer(std::uint32_t periodMs,
                                                  std::function<void()> tick) {
    auto source = std::make_shared<TimerSource>();
    source->handler = std::move(tick);
    source->period = std::chrono::milliseconds(std::max(periodMs, 1u));
    source->due = SteadyClock::now() + source->period;
    timers_.push_back(source);
    return std::make_unique<SourceHandle<Timer, TimerSource>>(std::move(source));
}

std::unique_ptr<Wakeup> PosixEventLoop::CreateWakeup(std::function<void()> handler) {
    auto source = std::make_shared<WakeSource>();
    source->handler = std::move(handler);
    wakeups_.push_back(source);
    return std::make_unique<WakeHandle>(std::move(source), wake_);
}

std::unique_ptr<DescriptorWatch> PosixEventLoop::WatchReadable(int descriptor,
                                                               std::function<void()> handler) {
    auto source = std::make_shared<WatchSource>();
    source->handler = std::move(handler);
    source->descriptor = descriptor;
    watches_.push_back(source);
    return std::make_unique<SourceHandle<DescriptorWatch, WatchSource>>(std::move(source));
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

void PosixEventLoop::Call(Source& source) {
    if (quit_ || !source.alive) return;
    source.running = true;
    source.handler();
    source.running = false;
    if (!source.alive) source.handler = nullptr;
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
        if (timer->alive && (!due || timer->due < *due)) due = timer->due;
    int waitMs = -1;
    if (due) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - SteadyClock::now());
        waitMs = static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(
            left.count(), 0, std::numeric_limits<int>::max()));
    }
    if (wake_->Get() < 0 && (waitMs < 0 || waitMs > kWithoutEventMs)) waitMs = kWithoutEventMs;
    return waitMs;
}

void PosixEventLoop::Wait() {
    const auto dead = [](const auto& source) { return !source->alive; };
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
