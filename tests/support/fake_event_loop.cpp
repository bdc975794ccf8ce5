#include "support/fake_event_loop.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace orma::test {

struct FakeEventLoop::Tick {
    std::uint64_t dueMs;
    std::uint32_t periodMs;
    std::function<void()> tick;
};

struct FakeEventLoop::Wake {
    explicit Wake(std::function<void()> call) : handler(std::move(call)) {}

    std::atomic<bool> signalled = false;
    std::function<void()> handler;
};

class FakeEventLoop::FakeTimer : public Timer {
  public:
    FakeTimer(FakeEventLoop& loop, std::shared_ptr<Tick> tick)
        : loop_(loop), tick_(std::move(tick)) {}
    ~FakeTimer() override { loop_.ticks_.remove(tick_); }

  private:
    FakeEventLoop& loop_;
    std::shared_ptr<Tick> tick_;
};

class FakeEventLoop::FakeWakeup : public Wakeup {
  public:
    FakeWakeup(FakeEventLoop& loop, std::shared_ptr<Wake> wake)
        : loop_(loop), wake_(std::move(wake)) {}
    ~FakeWakeup() override { loop_.wakes_.remove(wake_); }
    void Signal() noexcept override { wake_->signalled = true; }

  private:
    FakeEventLoop& loop_;
    std::shared_ptr<Wake> wake_;
};

FakeEventLoop::FakeEventLoop() = default;
FakeEventLoop::~FakeEventLoop() = default;

void FakeEventLoop::Post(std::function<void()> task) {
    tasks_.push_back(std::move(task));
}

std::unique_ptr<Timer> FakeEventLoop::StartTimer(std::uint32_t periodMs,
                                                 std::function<void()> tick) {
    ticks_.push_back(std::make_shared<Tick>(
        Tick{nowMs_ + std::max(periodMs, 1u), std::max(periodMs, 1u), std::move(tick)}));
    return std::make_unique<FakeTimer>(*this, ticks_.back());
}

std::unique_ptr<Wakeup> FakeEventLoop::CreateWakeup(std::function<void()> handler) {
    wakes_.push_back(std::make_shared<Wake>(std::move(handler)));
    return std::make_unique<FakeWakeup>(*this, wakes_.back());
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
    const auto found = std::find_if(wakes_.begin(), wakes_.end(),
                                    [](const auto& wake) { return wake->signalled.load(); });
    if (found == wakes_.end()) return false;
    const std::shared_ptr<Wake> wake = *found;  // the handler may destroy its own wake-up
    wake->signalled = false;
    wake->handler();
    return true;
}

void FakeEventLoop::Advance(std::uint32_t ms) {
    const std::uint64_t end = nowMs_ + ms;
    RunPending();
    while (!ticks_.empty()) {
        const auto next =
            std::min_element(ticks_.begin(), ticks_.end(),
                             [](const auto& a, const auto& b) { return a->dueMs < b->dueMs; });
        const std::shared_ptr<Tick> tick = *next;  // it may destroy its own timer
        if (tick->dueMs > end) break;
        nowMs_ = tick->dueMs;
        tick->dueMs += tick->periodMs;
        tick->tick();
        RunPending();
    }
    nowMs_ = end;
}

}  // namespace orma::test
