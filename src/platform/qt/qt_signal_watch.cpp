#include "platform/qt/qt_signal_watch.h"

#include <QSocketNotifier>
#include <utility>

#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace orma {
namespace {

sigset_t Watched() {
    sigset_t watched;
    sigemptyset(&watched);
    sigaddset(&watched, SIGINT);
    sigaddset(&watched, SIGTERM);
    return watched;
}

}  // namespace

void QtSignalWatch::Block() {
    const sigset_t watched = Watched();
    pthread_sigmask(SIG_BLOCK, &watched, nullptr);
}

QtSignalWatch::QtSignalWatch(std::function<void()> handler) : handler_(std::move(handler)) {
    const sigset_t watched = Watched();
    descriptor_ = signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) {
        pthread_sigmask(SIG_UNBLOCK, &watched, nullptr);
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { Poll(); });
}

void QtSignalWatch::Poll() {
    signalfd_siginfo info{};
    while (descriptor_ >= 0 && read(descriptor_, &info, sizeof info) == sizeof info)
        handler_();
}

QtSignalWatch::~QtSignalWatch() {
    // Those that arrived and were not read stay blocked: the program is at its end.
    notifier_.reset();
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace orma
