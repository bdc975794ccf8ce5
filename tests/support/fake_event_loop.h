#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <list>
#include <memory>

#include "platform/event_loop.h"

namespace orma::test {

/// An event loop that a test drives by hand: nothing runs but in RunPending, Advance and Run, and
/// time passes in Advance alone. One thread, but for Wakeup::Signal.
class FakeEventLoop : public EventLoop {
  public:
    void Post(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
    [[nodiscard]] std::unique_ptr<Timer> StartTimer(std::uint32_t periodMs,
                                                    std::function<void()> tick) override;
    [[nodiscard]] std::unique_ptr<Wakeup> CreateWakeup(std::function<void()> handler) override;

    /// Runs what is pending until Quit, or until nothing is left (then returns -1).
    int Run() override;
    void Quit(int code) override;

    /// Runs posted tasks and signalled wake-ups, those that they cause included.
    void RunPending();

    /// Lets `ms` milliseconds pass: timers tick in the order in which they are due, and what each
    /// tick posts runs before the next one.
    void Advance(std::uint32_t ms);

  private:
    struct Tick {
        std::uint64_t dueMs;
        std::uint32_t periodMs;
        std::function<void()> tick;
    };
    struct Wake {
        std::function<void()> handler;
        std::atomic<bool> signalled = false;
    };
    class FakeTimer;
    class FakeWakeup;

    bool RunOne();
    std::shared_ptr<Tick> NextTick();

    std::deque<std::function<void()>> tasks_;
    std::list<std::weak_ptr<Tick>> ticks_;  // a timer or wake-up owns its entry
    std::list<std::weak_ptr<Wake>> wakes_;
    std::uint64_t nowMs_ = 0;
    bool quit_ = false;
    int code_ = 0;
};

}  // namespace orma::test
