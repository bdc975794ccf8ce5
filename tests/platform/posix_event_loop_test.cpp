#include "platform/posix/posix_event_loop.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "platform/posix/signal_watch.h"

namespace orma {
namespace {

TEST(PosixEventLoop, WatchesADescriptorUntilTheWatchIsDestroyed) {
    PosixEventLoop loop;
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    std::string read;
    std::unique_ptr<DescriptorWatch> watch = loop.WatchReadable(ends[0], [&] {
        char byte = 0;
        ASSERT_EQ(::read(ends[0], &byte, 1), 1);
        read += byte;
        if (read.size() == 2) watch.reset();
    });
    ASSERT_EQ(::write(ends[1], "xyz", 3), 3);
    const auto end = loop.StartTimer(20, [&] { loop.Quit(0); });
    loop.Run();
    EXPECT_EQ(read, "xy");
    ::close(ends[0]);
    ::close(ends[1]);
}

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
