#include "platform/posix/posix_event_loop.h"

#include <vector>

#include <gtest/gtest.h>
#include <signal.h>

#include "platform/posix/signal_watch.h"

namespace orma {
namespace {

TEST(SignalWatch, TurnsInterruptAndTerminateIntoCallsOnTheLoop) {
    PosixEventLoop loop;
    std::vector<int> caught;
    std::unique_ptr<SignalWatch> watch;
    watch = std::make_unique<SignalWatch>(loop, [&](int signal) {
        caught.push_back(signal);
        if (caught.size() == 2) {
            watch.reset();  // from within its own handler
            loop.Quit(0);
        }
    });
    ::raise(SIGTERM);
    ::raise(SIGINT);
    loop.Run();
    ASSERT_EQ(caught.size(), 2u);
    EXPECT_EQ(caught[0] + caught[1], SIGINT + SIGTERM);

    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_FALSE(sigismember(&blocked, SIGINT));
    EXPECT_FALSE(sigismember(&blocked, SIGTERM));
}

}  // namespace
}  // namespace orma
