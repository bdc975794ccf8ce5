// What every event loop promises, the one of programs without a toolkit and the toolkit's.

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/posix/posix_event_loop.h"
#include "platform/qt/qt_event_loop.h"

namespace orma {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

template <typename Loop>
struct EventLoopContract : ::testing::Test {
    std::string name = "test";
    int count = 1;
    char* arguments = name.data();
    QCoreApplication application{count, &arguments};
    std::unique_ptr<EventLoop> own = std::make_unique<Loop>();
    EventLoop& loop = *own;
};

using Loops = ::testing::Types<PosixEventLoop, QtEventLoop>;
TYPED_TEST_SUITE(EventLoopContract, Loops);

TYPED_TEST(EventLoopContract, RunsPostedTasksInOrderAndReturnsTheCodeOfQuit) {
    std::string order;
    this->loop.Post([&] {
        order += "a";
        this->loop.Post([&] {
            order += "c";
            this->loop.Quit(7);
            this->loop.Post([&] { order += "after quit"; });
        });
    });
    this->loop.Post([&] { order += "b"; });
    EXPECT_EQ(this->loop.Run(), 7);
    EXPECT_EQ(order, "abc");
    this->loop.Quit(3);  // before Run: not lost
    EXPECT_EQ(this->loop.Run(), 3);
}

TYPED_TEST(EventLoopContract, ATaskThatPostsItselfForEverStarvesNeitherTimersNorWakeups) {
    std::function<void()> again = [&] { this->loop.Post(again); };
    again();
    bool woken = false;
    const auto wakeup = this->loop.CreateWakeup([&] { woken = true; });
    wakeup->Signal();
    const auto timer = this->loop.StartTimer(5, [&] { this->loop.Quit(0); });
    this->loop.Run();
    EXPECT_TRUE(woken);
}

TYPED_TEST(EventLoopContract, TimersTickAtTheirPeriodAndMissedTicksAreNotMadeUp) {
    int ticks = 0;
    const auto timer = this->loop.StartTimer(10, [&] {
        if (++ticks == 5) this->loop.Quit(0);
    });
    const auto start = steady_clock::now();
    this->loop.Run();
    EXPECT_GE(steady_clock::now() - start, 50ms);
    std::this_thread::sleep_for(100ms);
    this->loop.Post([&] { this->loop.Post([&] { this->loop.Quit(0); }); });
    this->loop.Run();
    EXPECT_EQ(ticks, 6);
}

TYPED_TEST(EventLoopContract, ATimerMayEndItselfAndOthersFromItsOwnTick) {
    const auto held = std::make_shared<int>(0);
    std::unique_ptr<Timer> other;
    std::unique_ptr<Timer> self = this->loop.StartTimer(1, [&, held] {
        self.reset();
        other.reset();
        ++*held;  // what the handler holds lives until it returns
    });
    other = this->loop.StartTimer(2, [&] { ADD_FAILURE() << "a destroyed timer ticked"; });
    const auto end = this->loop.StartTimer(20, [&] { this->loop.Quit(0); });
    this->loop.Run();
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(EventLoopContract, NoSignalIsLostBetweenTwoThreads) {
    constexpr int kItems = 20000;
    std::atomic<int> made = 0;
    const auto wakeup = this->loop.CreateWakeup([&] {
        if (made == kItems) this->loop.Quit(0);
    });
    const std::jthread producer([&] {
        while (made < kItems) {
            ++made;
            wakeup->Signal();
        }
    });
    EXPECT_EQ(this->loop.Run(), 0);  // hangs when the last signal is lost
}

TYPED_TEST(EventLoopContract, SignalsCountOnceAndWhatAQuitLeftBehindIsServedByTheNextRun) {
    int runs = 0;
    const auto first = this->loop.CreateWakeup([&] { this->loop.Quit(++runs); });
    const auto second = this->loop.CreateWakeup([&] { this->loop.Quit(20); });
    const auto endsTheWait = this->loop.StartTimer(5000, [] {});
    first->Signal();
    first->Signal();
    second->Signal();
    const auto start = steady_clock::now();
    EXPECT_EQ(this->loop.Run(), 1);
    EXPECT_EQ(this->loop.Run(), 20);
    EXPECT_EQ(runs, 1);
    EXPECT_LT(steady_clock::now() - start, 4s);
}

TYPED_TEST(EventLoopContract, AWakeupMayDestroyItselfAndMayOutliveTheLoop) {
    int runs = 0;
    std::unique_ptr<Wakeup> self = this->loop.CreateWakeup([&] {
        ++runs;
        self.reset();
        this->loop.Quit(0);
    });
    const auto survivor = this->loop.CreateWakeup([] {});
    self->Signal();
    this->loop.Run();
    EXPECT_EQ(runs, 1);
    this->own.reset();
    survivor->Signal();
}

using OfTheToolkit = EventLoopContract<QtEventLoop>;

TEST_F(OfTheToolkit, ABoxWithinATaskLetsTheRestGoOn) {
    std::string order;
    QEventLoop box;
    loop.Post([&] {
        order += "(";
        box.exec();
        order += ")";
        loop.Quit(0);
    });
    const auto wakeup = loop.CreateWakeup([&] {
        order += "w";
        box.quit();
    });
    loop.Post([&] {
        order += "t";
        wakeup->Signal();
    });
    loop.Run();
    EXPECT_EQ(order, "(tw)");
}

}  // namespace
}  // namespace orma
