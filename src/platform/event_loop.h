#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace orma {

/// Wakes the UI thread from another one.
class Wakeup {
  public:
    virtual ~Wakeup() = default;

    /// Makes the handler run soon on the UI thread; signals before it runs count as one. Any
    /// thread, an audio callback included: does not block, allocate or fail.
    virtual void Signal() noexcept = 0;
};

/// A running timer; its destructor stops it.
class Timer {
  public:
    virtual ~Timer() = default;
};

/// The event loop of the UI thread, on which all logic runs. UI thread only, but for
/// Wakeup::Signal.
class EventLoop {
  public:
    virtual ~EventLoop() = default;

    /// Runs `task` after the present event, in the order of posting.
    virtual void Post(std::function<void()> task) = 0;

    /// Calls `tick` every `periodMs` milliseconds until the timer is destroyed (also from within
    /// `tick`); ticks that were missed are not made up.
    [[nodiscard]] virtual std::unique_ptr<Timer> StartTimer(std::uint32_t periodMs,
                                                            std::function<void()> tick) = 0;

    /// A wake-up whose `handler` runs on this loop until it is destroyed.
    [[nodiscard]] virtual std::unique_ptr<Wakeup> CreateWakeup(std::function<void()> handler) = 0;

    /// Runs events until Quit; returns Quit's code. Not re-entrant.
    virtual int Run() = 0;

    /// Makes Run return after the present event; before Run, makes it return at once.
    virtual void Quit(int code) = 0;
};

}  // namespace orma
