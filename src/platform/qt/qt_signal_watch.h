#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace orma {

/// Turns SIGINT and SIGTERM into a call on Qt's event loop while it lives; they arrive through a
/// signalfd.
class QtSignalWatch {
  public:
    /// Keeps the signals for a watch. First of all in `main`: a thread that was started before, as
    /// QApplication does, would still take them and end the program.
    static void Block();

    /// `handler` is called once for each signal that arrives. UI thread, after Block.
    explicit QtSignalWatch(std::function<void()> handler);
    ~QtSignalWatch();

    /// Calls the handler for what has arrived, where long work keeps the event loop from turning.
    void Poll();

    QtSignalWatch(const QtSignalWatch&) = delete;
    QtSignalWatch& operator=(const QtSignalWatch&) = delete;

  private:
    std::function<void()> handler_;
    int descriptor_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orma
