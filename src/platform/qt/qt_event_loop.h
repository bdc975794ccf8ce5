#pragma once

#include <memory>

#include "platform/event_loop.h"

namespace orma {

/// The event loop of programs with a window: the toolkit's own, which nested loops of boxes and
/// dialogs keep running too, so handlers may be entered while one of them shows a box. Tasks and
/// wake-ups come by one eventfd: what is posted while a job lets no events through is still there
/// afterwards. Create it after the toolkit's application object, destroy it before. Timers and
/// wake-ups may be destroyed at any time, from within their own handler too, and may outlive the
/// loop.
class QtEventLoop : public EventLoop {
  public:
    QtEventLoop();
    ~QtEventLoop() override;
    QtEventLoop(const QtEventLoop&) = delete;
    QtEventLoop& operator=(const QtEventLoop&) = delete;

    void Post(std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<Timer> StartTimer(std::uint32_t periodMs,
                                                    std::function<void()> tick) override;
    [[nodiscard]] std::unique_ptr<Wakeup> CreateWakeup(std::function<void()> handler) override;
    int Run() override;
    void Quit(int code) override;

  private:
    struct State;
    class TimerHandle;
    class Notifier;

    void Serve();

    std::shared_ptr<State> state_;
    std::unique_ptr<Notifier> notifier_;
};

}  // namespace orma
