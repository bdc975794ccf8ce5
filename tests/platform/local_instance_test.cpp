#include "platform/qt/local_instance.h"

#include <QCoreApplication>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/qt/qt_event_loop.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

/// A desktop user's session with a program folder.
class LocalInstanceTest : public ::testing::Test {
  protected:
    LocalInstanceTest() {
        std::filesystem::permissions(runtime_.Native(), std::filesystem::perms::owner_all);
        ::setenv("XDG_RUNTIME_DIR", runtime_.Native().c_str(), 1);
    }
    ~LocalInstanceTest() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    /// Starts another process that does `work` as an instance and then ends, its locks with it.
    template <typename Work>
    pid_t Start(Work work) {
        const pid_t child = ::fork();
        if (child != 0) return child;
        work();
        ::_exit(0);
    }
    static int ResultOf(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    test::TempFolder runtime_;
    test::TempFolder home_;
    test::TempFolder other_;
    std::string name_ = "test";
    int count_ = 1;
    char* arguments_ = name_.data();
    QCoreApplication application_{count_, &arguments_};
    QtEventLoop loop_;
};

TEST_F(LocalInstanceTest, HearsTheOthersOfItsFolderAloneAndIsGoneWithItsEnd) {
    auto first = std::make_unique<LocalInstance>(home_.Path());
    std::string heard;
    EXPECT_FALSE(first->IsOpen());
    const auto end = [&] {
        heard += "close";
        loop_.Quit(0);
    };
    EXPECT_TRUE(first->Open({.raise = [&] { heard += "raise "; }, .close = end}));
    EXPECT_TRUE(first->IsOpen());
    EXPECT_FALSE(LocalInstance(home_.Path()).Open({})) << "there is one";

    const pid_t second = Start([&] {
        LocalInstance others(other_.Path());
        LocalInstance instance(home_.Path());
        if (others.IsOpen() || !instance.IsOpen()) ::_exit(1);
        others.Raise();
        instance.CloseSetup();
        instance.Raise();
        if (instance.Close(50)) ::_exit(2);  // it is asked, and does not end
    });
    const auto patience = loop_.StartTimer(10'000, [&] { loop_.Quit(1); });
    EXPECT_EQ(loop_.Run(), 0);
    EXPECT_EQ(heard, "raise close");
    EXPECT_EQ(ResultOf(second), 0);

    LocalInstance third(home_.Path());
    EXPECT_TRUE(third.IsOpen());
    first->Leave();
    EXPECT_FALSE(third.IsOpen());
    EXPECT_TRUE(third.Close(0));
    EXPECT_TRUE(third.Open({}));
    first.reset();
    EXPECT_TRUE(LocalInstance(home_.Path()).IsOpen()) << "the first one took nothing with it";
}

TEST_F(LocalInstanceTest, WhatAKilledInstanceLeavesBehindIsInNobodysWay) {
    EXPECT_EQ(ResultOf(Start([&] {
                  LocalInstance instance(home_.Path());
                  ::_exit(instance.Open({}) && instance.IsOpen() ? 0 : 1);  // no destructor runs
              })),
              0);
    ASSERT_FALSE(std::filesystem::is_empty(runtime_.Native()));
    LocalInstance instance(home_.Path());
    EXPECT_FALSE(instance.IsOpen());
    EXPECT_TRUE(instance.Open({.raise = [&] { loop_.Quit(0); }, .close = {}}));
    const pid_t other = Start([&] { LocalInstance(home_.Path()).Raise(); });
    const auto patience = loop_.StartTimer(10'000, [&] { loop_.Quit(1); });
    EXPECT_EQ(loop_.Run(), 0) << "it is not heard";
    EXPECT_EQ(ResultOf(other), 0);
}

TEST_F(LocalInstanceTest, AFolderThatOthersCanEnterIsNotTrusted) {
    std::filesystem::permissions(runtime_.Native(), std::filesystem::perms::all);
    test::TempFolder temporary;
    ::setenv("TMPDIR", temporary.Native().c_str(), 1);
    LocalInstance instance(home_.Path());
    EXPECT_TRUE(instance.Open({}));
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(instance.IsOpen());
    EXPECT_TRUE(std::filesystem::is_empty(runtime_.Native()));
    for (const auto& folder : std::filesystem::directory_iterator(temporary.Native()))
        EXPECT_EQ(folder.status().permissions(), std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace orma
