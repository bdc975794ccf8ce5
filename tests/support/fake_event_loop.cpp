#include "support/fake_event_loop.h"

#include <algorithm>
#include <utility>

namespace orma::test {

class FakeEventLoop::FakeTimer : public Timer {
  public:
    explicit FakeTimer(std::shared_ptr<Tick> tick) : tick_(std::move(tick)) {}

  private:
    std::shared_ptr<Tick> tick_;
};

class FakeEventLoop::FakeWakeup : public Wakeup {
  public:
    explicit FakeWakeup(std::shared_ptr<Wake> wake) : wake_(std::move(wake)) {}
    void Signal() noexcept override { wake_->signalled = true; }

  private:
    std::shared_ptr<Wake> wake_;
};

std::unique_ptr<Timer> FakeEventLoop::StartTimer(std::uint32_t periodMs,
                                                 std::function<void()> tick) {
    const std::uint32_t period = std::max(periodMs, 1u);
    auto made = std::make_shared<Tick>(Tick{nowMs_ + period, period, std::move(tick)});
    ticks_.push_back(made);
    return std::make_unique<FakeTimer>(std::move(made));
}

std::unique_ptr<Wakeup> FakeEventLoop::CreateWakeup(std::function<void()> handler) {
    wakes_.remove_if([](const auto& entry) { return entry.expired(); });
    auto made = std::make_shared<Wake>();
    made->handler = std::move(handler);
    wakes_.push_back(made);
    return std::make_unique<FakeWakeup>(std::move(made));
}

int FakeEventLoop::Run() {
    while (!quit_ && RunOne()) {
    }
    return std::exchange(quit_, false) ? code_ : -1;
}

void FakeEventLoop::Quit(int code) {
    quit_ = true;
    code_ = code;
}

void FakeEventLoop::RunPending() {
    while (RunOne()) {
    }
}

bool FakeEventLoop::RunOne() {
    if (!tasks_.empty()) {
        const auto task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
        return true;
    }
    for (const auto& entry : wakes_) {
        const auto wake = entry.lock();  // the handler may destroy its own wake-up
        if (wake && wake->signalled.exchange(false)) {
            wake->handler();
            return true;
        }
    }
    return false;
}

std::shared_ptr<FakeEventLoop::Tick> FakeEventLoop::NextTick() {
    ticks_.remove_if([](const auto& entry) { return entry.expired(); });
    std::shared_ptr<Tick> next;
    for (const auto& entry : ticks_)
        if (const auto tick = entry.lock(); !next || tick->dueMs < next->dueMs) next = tick;
    return next;
}

void FakeEventLoop::Advance(std::uint32_t ms) {
    const std::uint64_t end = nowMs_ + ms;
    RunPending();
    while (const std::shared_ptr<Tick> tick = NextTick()) {  // which may destroy its own timer
        if (tick->dueMs > end) break;
        nowMs_ = tick->dueMs;
        tick->dueMs += tick->periodMs;
        tick->tick();
        RunPending();
    }
    nowMs_ = end;
}

}  // namespace orma::test
