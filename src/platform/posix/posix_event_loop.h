#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "platform/posix/event_source.h"

struct pollfd;

namespace orma {

/// Watches a file descriptor; its destructor ends the watch and leaves the descriptor open.
class DescriptorWatch {
  public:
    virtual ~DescriptorWatch() = default;
};

/// The event loop of programs without a toolkit: poll(2), with an eventfd for wake-ups. Posted
/// tasks, descriptors and timers take turns, so a task that posts itself starves nobody. Timers,
/// watches and wake-ups may be destroyed at any time, from within their own handler too, and may
/// outlive the loop.
class PosixEventLoop : public EventLoop {
  public:
    PosixEventLoop();
    ~PosixEventLoop() override;
    PosixEventLoop(const PosixEventLoop&) = delete;
    PosixEventLoop& operator=(const PosixEventLoop&) = delete;

    void Post(std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<Timer> StartTimer(std::uint32_t periodMs,
                                                    std::function<void()> tick) override;
    [[nodiscard]] std::unique_ptr<Wakeup> CreateWakeup(std::function<void()> handler) override;
    int Run() override;
    void Quit(int code) override;

    /// Calls `handler` while `descriptor` has something to read (or is at its end), until the
    /// watch is destroyed. UI thread.
    [[nodiscard]] std::unique_ptr<DescriptorWatch> WatchReadable(int descriptor,
                                                                 std::function<void()> handler);

  private:
    struct TimerSource;
    struct WatchSource;
    template <class Handle>
    class SourceHandle;

    void RunTasks();
    void Wait();
    void RunWatches();
    void RunWakeups();
    void RunTimers();
    [[nodiscard]] int WaitMs() const;
    void Call(EventSource& source);

    std::shared_ptr<EventDescriptor> wake_;
    std::deque<std::function<void()>> tasks_;
    std::vector<std::shared_ptr<TimerSource>> timers_;
    std::vector<std::shared_ptr<WakeSource>> wakeups_;
    std::vector<std::shared_ptr<WatchSource>> watches_;
    std::vector<pollfd> polled_;  // kept, so that a turn allocates nothing
    bool quit_ = false;
    int code_ = 0;
};

}  // namespace orma
