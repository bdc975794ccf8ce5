#include "platform/posix/console.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "platform/posix/held_interrupt.h"

namespace orma {
namespace {

TEST(Console, TakesCtrlCForNoAnswerAlsoWhileItIsHeldBack) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int usual = dup(STDIN_FILENO);
    dup2(ends[0], STDIN_FILENO);
    ASSERT_EQ(write(ends[1], "yes\nlate", 8), 8);
    EXPECT_EQ(ReadAnswer(), "yes");
    {
        const HeldInterrupt held;
        ASSERT_EQ(pthread_kill(pthread_self(), SIGINT), 0);
        EXPECT_EQ(ReadAnswer(), "") << "it does not wait for the end of the line";
    }
    close(ends[1]);
    EXPECT_EQ(ReadAnswer(), "late") << "the input is at its end";
    dup2(usual, STDIN_FILENO);
    close(usual);
    close(ends[0]);
}

}  // namespace
}  // namespace orma
