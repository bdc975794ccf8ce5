#include "platform/curl/sigpipe_guard.h"

#include <ctime>

namespace orma {
namespace {

sigset_t OnlySigpipe() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

}  // namespace

SigpipeGuard::SigpipeGuard(bool needed) {
    if (!needed) return;
    sigset_t pending;
    sigpending(&pending);
    if (sigismember(&pending, SIGPIPE) != 0) return;  // someone else holds it already
    const sigset_t set = OnlySigpipe();
    held_ = pthread_sigmask(SIG_BLOCK, &set, &before_) == 0;
}

SigpipeGuard::~SigpipeGuard() {
    if (!held_) return;
    const sigset_t set = OnlySigpipe();
    const timespec now{};
    while (sigtimedwait(&set, nullptr, &now) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace orma
