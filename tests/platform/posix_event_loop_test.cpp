#include "platform/posix/posix_event_loop.h"

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "platform/posix/signal_watch.h"

namespace orma {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

TEST(PosixEventLoop, RunsPostedTasksInOrderAndReturnsTheCodeOfQuit) {
    PosixEventLoop loop;
    std::string order;
    loop.Post([&] {
        order += "a";
        loop.Post([&] {
            order += "c";
            loop.Quit(7);
            loop.Post([&] { order += "after quit"; });
        });
    });
    loop.Post([&] { order += "b"; });
    EXPECT_EQ(loop.Run(), 7);
    EXPECT_EQ(order, "abc");
    loop.Quit(3);  // before Run: not lost
    EXPECT_EQ(loop.Run(), 3);
}

TEST(PosixEventLoop, ATaskThatPostsItselfForEverStarvesNeitherTimersNorWakeups) {
    PosixEventLoop loop;
    std::function<void()> again = [&] { loop.Post(again); };
    loop.Post(again);
    bool woken = false;
    const auto wakeup = loop.CreateWakeup([&] { woken = true; });
    wakeup->Signal();
    const auto timer = loop.StartTimer(5, [&] { loop.Quit(0); });
    loop.Run();
    EXPECT_TRUE(woken);
}

TEST(PosixEventLoop, TimersTickAtTheirPeriodAndMissedTicksAreNotMadeUp) {
    PosixEventLoop loop;
    int ticks = 0;
    const auto timer = loop.StartTimer(10, [&] {
        if (++ticks == 5) loop.Quit(0);
    });
    const auto start = steady_clock::now();
    loop.Run();
    EXPECT_GE(steady_clock::now() - start, 50ms);
    std::this_thread::sleep_for(100ms);
    loop.Post([&] { loop.Post([&] { loop.Quit(0); }); });
    loop.Run();
    EXPECT_EQ(ticks, 6);
}

TEST(PosixEventLoop, ATimerMayEndItselfAndOthersFromItsOwnTick) {
    PosixEventLoop loop;
    const auto held = std::make_shared<int>(0);
    std::unique_ptr<Timer> other;
    std::unique_ptr<Timer> self = loop.StartTimer(1, [&, held] {
        self.reset();
        other.reset();
        ++*held;  // what the handler holds lives until it returns
    });
    other = loop.StartTimer(2, [&] { ADD_FAILURE() << "a destroyed timer ticked"; });
    const auto end = loop.StartTimer(20, [&] { loop.Quit(0); });
    loop.Run();
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(PosixEventLoop, NoSignalIsLostBetweenTwoThreads) {
    PosixEventLoop loop;
    constexpr int kItems = 20000;
    std::atomic<int> made = 0;
    const auto wakeup = loop.CreateWakeup([&] {
        if (made == kItems) loop.Quit(0);
    });
    std::thread producer([&] {
        for (int i = 0; i < kItems; ++i) {
            ++made;
            wakeup->Signal();
        }
    });
    loop.Run();  // hangs when the last signal is lost
    producer.join();
    EXPECT_EQ(made, kItems);
}

TEST(PosixEventLoop, SignalsCountOnceAndWhatAQuitLeftBehindIsServedByTheNextRun) {
    PosixEventLoop loop;
    int runs = 0;
    const auto first = loop.CreateWakeup([&] {
        ++runs;
        loop.Quit(1);
    });
    const auto second = loop.CreateWakeup([&] { loop.Quit(2); });
    const auto endsTheWait = loop.StartTimer(5000, [] {});
    first->Signal();
    first->Signal();
    second->Signal();
    const auto start = steady_clock::now();
    EXPECT_EQ(loop.Run(), 1);
    EXPECT_EQ(loop.Run(), 2);
    EXPECT_EQ(runs, 1);
    EXPECT_LT(steady_clock::now() - start, 4s);
}

TEST(PosixEventLoop, AWakeupMayDestroyItselfAndMayOutliveTheLoop) {
    auto loop = std::make_unique<PosixEventLoop>();
    int runs = 0;
    std::unique_ptr<Wakeup> self = loop->CreateWakeup([&] {
        ++runs;
        self.reset();
        loop->Quit(0);
    });
    const auto survivor = loop->CreateWakeup([] {});
    self->Signal();
    loop->Run();
    EXPECT_EQ(runs, 1);
    loop.reset();
    survivor->Signal();
}

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
