#include "platform/posix/signal_watch.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace orma {

SignalWatch::SignalWatch(PosixEventLoop& loop, std::function<void(int)> handler) {
    sigset_t watched;
    sigemptyset(&watched);
    sigaddset(&watched, SIGINT);
    sigaddset(&watched, SIGTERM);
    descriptor_ = ::signalfd(-1, &watched, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor_ < 0) return;
    ::pthread_sigmask(SIG_BLOCK, &watched, &previous_);
    // The handler belongs to the watch, which may be destroyed while it runs.
    watch_ = loop.WatchReadable(descriptor_, [this, handler = std::move(handler)] {
        if (const int signal = Next(); signal != 0) handler(signal);
    });
}

SignalWatch::~SignalWatch() {
    if (descriptor_ < 0) return;
    while (Next() != 0) {
    }
    watch_.reset();
    ::close(descriptor_);
    ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

/// The next signal that arrived; 0 when there is none.
int SignalWatch::Next() const {
    signalfd_siginfo info{};
    return ::read(descriptor_, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo)
                                                                  : 0;
}

}  // namespace orma
