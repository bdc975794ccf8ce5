#include "platform/portaudio/bounded_worker.h"

#include <atomic>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace orma {
namespace {

using namespace std::chrono_literals;

/// What a job may touch after the test has given it up.
struct Shared {
    std::promise<void> release;
    std::shared_future<void> released{release.get_future()};
    std::promise<void> begun;
    std::promise<void> undone;
};

TEST(BoundedWorker, AHungJobCostsItsCallerTheLimitAndLaterCallersNothing) {
    BoundedWorker worker;
    const auto shared = std::make_shared<Shared>();
    std::atomic<bool> begun = false;
    // On a busy machine the job may be dropped before it begins: that is another test's matter.
    while (!begun) {
        const auto hang = [shared, &begun] {
            begun = true;
            shared->released.wait();
        };
        const auto undo = [shared] { shared->undone.set_value(); };
        EXPECT_FALSE(worker.Run(hang, undo, 20ms));
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(worker.Run([] { ADD_FAILURE() << "ran behind a hung job"; }, {}, 10min));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1min);

    // When the library comes back the late job is undone and the worker takes jobs again.
    auto undone = shared->undone.get_future();
    shared->release.set_value();
    ASSERT_EQ(undone.wait_for(10s), std::future_status::ready);
    worker.Post([] {});
    bool ran = false;
    for (int tries = 0; tries < 1000 && !ran; ++tries)
        if (!worker.Run([&] { ran = true; }, {}, 10s)) std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(ran);
}

TEST(BoundedWorker, AJobThatHadNotBegunInTimeIsDropped) {
    BoundedWorker worker;
    const auto shared = std::make_shared<Shared>();
    worker.Post([shared] { shared->released.wait(); });
    EXPECT_FALSE(worker.Run([] { ADD_FAILURE() << "ran after its caller had gone"; },
                            [] { ADD_FAILURE() << "undid what was never done"; }, 20ms));
    shared->release.set_value();
    EXPECT_TRUE(worker.Finish(10s));
}

TEST(BoundedWorker, IsAbandonedWithAHungJobAndItsThreadStillEndsByItself) {
    const auto shared = std::make_shared<Shared>();
    {
        BoundedWorker worker;
        worker.Post([shared] {
            shared->begun.set_value();
            shared->released.wait();
        });
        worker.Post([shared] { shared->undone.set_value(); });
        shared->begun.get_future().wait();
        EXPECT_FALSE(worker.Finish(20ms));
    }
    shared->release.set_value();
    EXPECT_EQ(shared->undone.get_future().wait_for(10s), std::future_status::ready);
}

}  // namespace
}  // namespace orma
