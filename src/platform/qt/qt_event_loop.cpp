#include "platform/qt/qt_event_loop.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QTimerEvent>
#include <algorithm>
#include <deque>
#include <vector>

#include "platform/posix/event_source.h"

namespace orma {

/// Outlives the loop in its handles.
struct QtEventLoop::State {
    [[nodiscard]] bool IsPending() const {
        return !tasks.empty() || std::ranges::any_of(wakeups, [](const auto& wakeup) {
            return wakeup->IsAlive() && wakeup->signalled.load();
        });
    }

    std::shared_ptr<EventDescriptor> wake = std::make_shared<EventDescriptor>();
    std::deque<std::function<void()>> tasks;
    std::vector<std::shared_ptr<WakeSource>> wakeups;
    bool running = false;
    bool quit = false;
    int code = 0;
};

class QtEventLoop::TimerHandle : public Timer, public QObject {
  public:
    TimerHandle(std::uint32_t periodMs, std::function<void()> tick, std::shared_ptr<State> state)
        : source_(std::make_shared<EventSource>(std::move(tick))), state_(std::move(state)) {
        startTimer(static_cast<int>(std::clamp<std::uint32_t>(periodMs, 1, INT32_MAX)),
                   Qt::PreciseTimer);
    }
    ~TimerHandle() override { source_->End(); }

  protected:
    void timerEvent(QTimerEvent* /*event*/) override {
        const std::shared_ptr<EventSource> source = source_;  // the tick may destroy this timer
        if (!state_->quit) source->Call();
    }

  private:
    std::shared_ptr<EventSource> source_;
    std::shared_ptr<State> state_;
};

/// Tells that the eventfd is readable; looks now and then when there is none.
class QtEventLoop::Notifier {
  public:
    Notifier(int descriptor, const std::function<void()>& serve) {
        if (descriptor >= 0) {
            notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
            QObject::connect(notifier_.get(), &QSocketNotifier::activated, serve);
        } else {
            QObject::connect(&timer_, &QTimer::timeout, serve);
            timer_.start(EventDescriptor::kLookWithoutMs);
        }
    }

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer timer_;
};

QtEventLoop::QtEventLoop()
    : state_(std::make_shared<State>()),
      notifier_(std::make_unique<Notifier>(state_->wake->Get(), [this] { Serve(); })) {}

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::Post(std::function<void()> task) {
    state_->tasks.push_back(std::move(task));
    state_->wake->Write();
}

std::unique_ptr<Timer> QtEventLoop::StartTimer(std::uint32_t periodMs, std::function<void()> tick) {
    return std::make_unique<TimerHandle>(periodMs, std::move(tick), state_);
}

std::unique_ptr<Wakeup> QtEventLoop::CreateWakeup(std::function<void()> handler) {
    auto source = std::make_shared<WakeSource>(std::move(handler));
    std::erase_if(state_->wakeups, [](const auto& wakeup) { return !wakeup->IsAlive(); });
    state_->wakeups.push_back(source);
    return std::make_unique<WakeHandle>(std::move(source), state_->wake);
}

int QtEventLoop::Run() {
    if (!state_->quit) {
        if (state_->IsPending()) state_->wake->Write();  // what an earlier Quit left behind
        state_->running = true;
        const int code = QCoreApplication::exec();
        state_->running = false;
        if (!state_->quit) state_->code = code;  // the desktop ended the session
    }
    state_->quit = false;
    return state_->code;
}

void QtEventLoop::Quit(int code) {
    state_->quit = true;
    state_->code = code;
    if (state_->running) QCoreApplication::exit(code);
}

/// Runs the tasks that are posted now, those that they post come with the next turn, and then the
/// wake-ups. The eventfd stays readable meanwhile, so that the loop of a box within a handler goes
/// on with the rest; the turn that finds nothing leaves it drained.
void QtEventLoop::Serve() {
    const std::shared_ptr<State> state = state_;
    state->wake->Drain();
    if (state->quit || !state->IsPending()) return;
    state->wake->Write();
    for (std::size_t left = state->tasks.size(); left > 0 && !state->tasks.empty() && !state->quit;
         --left) {
        const auto task = std::move(state->tasks.front());
        state->tasks.pop_front();
        task();
    }
    // Handlers may add and drop sources: by index, with a copy that keeps the running one.
    for (std::size_t i = 0; i < state->wakeups.size() && !state->quit; ++i) {
        const std::shared_ptr<WakeSource> wakeup = state->wakeups[i];
        if (wakeup->signalled.exchange(false)) wakeup->Call();
    }
}

}  // namespace orma
