#pragma once

#include <functional>
#include <memory>

#include <signal.h>

#include "platform/posix/posix_event_loop.h"

namespace orma {

/// Turns SIGINT (Ctrl-C) and SIGTERM into a call on the event loop while it lives. Create it before
/// the program starts its first thread: the signals are blocked in the calling thread and those
/// that it starts from then on (child processes inherit that too), and arrive through a signalfd.
/// When the system refuses one, the signals keep their present action.
class SignalWatch {
  public:
    /// `handler` gets the signal's number, once per signal that arrives. UI thread.
    SignalWatch(PosixEventLoop& loop, std::function<void(int signal)> handler);

    /// Gives the signals back to the action they had; those that arrived unread are forgotten.
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

  private:
    int Next() const;

    sigset_t previous_{};
    int descriptor_ = -1;
    std::unique_ptr<DescriptorWatch> watch_;
};

}  // namespace orma
