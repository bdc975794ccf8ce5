#include "platform/posix/held_interrupt.h"

#include <ctime>

namespace orma {
namespace {

sigset_t Interrupt() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    return signals;
}

}  // namespace

HeldInterrupt::HeldInterrupt() {
    const sigset_t interrupt = Interrupt();
    pthread_sigmask(SIG_BLOCK, &interrupt, &previous_);
}

HeldInterrupt::~HeldInterrupt() {
    const sigset_t interrupt = Interrupt();
    const timespec atOnce{};
    while (sigtimedwait(&interrupt, nullptr, &atOnce) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

bool HeldInterrupt::IsPending() const {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGINT) == 1;
}

}  // namespace orma
