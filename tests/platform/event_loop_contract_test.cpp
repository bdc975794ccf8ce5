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

struct PosixRig {
    std::unique_ptr<EventLoop> Make() { return std::make_unique<PosixEventLoop>(); }
};

struct QtRig {
    std::unique_ptr<EventLoop> Make() { return std::make_unique<QtEventLoop>(); }

    std::string name = "test";
    int count = 1;
    char* arguments = name.data();
    QCoreApplication application{count, &arguments};
};

template <typename Rig>
class EventLoopContract : public ::testing::Test {
  public:
    Rig rig;
    std::unique_ptr<EventLoop> own = rig.Make();
};

using Rigs = ::testing::Types<PosixRig, QtRig>;
TYPED_TEST_SUITE(EventLoopContract, Rigs);

TYPED_TEST(EventLoopContract, RunsPostedTasksInOrderAndReturnsTheCodeOfQuit) {
    EventLoop& loop = *this->own;
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

TYPED_TEST(EventLoopContract, ATaskThatPostsItselfForEverStarvesNeitherTimersNorWakeups) {
    EventLoop& loop = *this->own;
    std::function<void()> again = [&] { loop.Post(again); };
    loop.Post(again);
    bool woken = false;
    const auto wakeup = loop.CreateWakeup([&] { woken = true; });
    wakeup->Signal();
    const auto timer = loop.StartTimer(5, [&] { loop.Quit(0); });
    loop.Run();
    EXPECT_TRUE(woken);
}

TYPED_TEST(EventLoopContract, TimersTickAtTheirPeriodAndMissedTicksAreNotMadeUp) {
    EventLoop& loop = *this->own;
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

TYPED_TEST(EventLoopContract, ATimerMayEndItselfAndOthersFromItsOwnTick) {
    EventLoop& loop = *this->own;
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

TYPED_TEST(EventLoopContract, NoSignalIsLostBetweenTwoThreads) {
    EventLoop& loop = *this->own;
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

TYPED_TEST(EventLoopContract, SignalsCountOnceAndWhatAQuitLeftBehindIsServedByTheNextRun) {
    EventLoop& loop = *this->own;
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

TYPED_TEST(EventLoopContract, AWakeupMayDestroyItselfAndMayOutliveTheLoop) {
    auto loop = std::move(this->own);
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

TEST(QtEventLoop, ABoxWithinATaskLetsTheRestGoOn) {
    QtRig rig;
    QtEventLoop loop;
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
