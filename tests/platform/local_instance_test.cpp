#include "platform/qt/local_instance.h"

#include <QCoreApplication>
#include <chrono>
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
struct LocalInstanceTest : ::testing::Test {
    LocalInstanceTest() {
        std::filesystem::permissions(runtime.Native(), std::filesystem::perms::owner_all);
        ::setenv("XDG_RUNTIME_DIR", runtime.Native().c_str(), 1);
    }
    ~LocalInstanceTest() override { ::unsetenv("XDG_RUNTIME_DIR"); }

    /// Starts another process whose exit code is what `work` returns, and which ends without a
    /// destructor, its locks with it.
    template <typename Work>
    pid_t Start(Work work) {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(work());
        return child;
    }
    static void ExpectGoodEnd(pid_t child) {
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }

    test::TempFolder runtime;
    test::TempFolder home;
    std::string name = "test";
    int count = 1;
    char* arguments = name.data();
    QCoreApplication application{count, &arguments};
    QtEventLoop loop;
};

TEST_F(LocalInstanceTest, HearsTheOthersOfItsFolderAloneAndIsGoneWithItsEnd) {
    ExpectGoodEnd(Start([&] {
        LocalInstance killed(home.Path());
        return killed.Open({}) && killed.IsOpen() ? 0 : 1;
    }));
    ASSERT_FALSE(std::filesystem::is_empty(runtime.Native())) << "what it leaves behind";
    auto first = std::make_unique<LocalInstance>(home.Path());
    std::string heard;
    EXPECT_FALSE(first->IsOpen());
    const auto end = [&] {
        heard += "close";
        loop.Quit(0);
    };
    EXPECT_TRUE(first->Open({.raise = [&] { heard += "raise "; }, .close = end}));
    EXPECT_TRUE(first->IsOpen());
    EXPECT_FALSE(LocalInstance(home.Path()).Open({})) << "there is one";

    const test::TempFolder other;
    const pid_t second = Start([&] {
        LocalInstance others(other.Path());
        LocalInstance instance(home.Path());
        if (others.IsOpen() || !instance.IsOpen()) return 1;
        others.Raise();
        instance.CloseSetup();
        instance.Raise();
        return instance.Close(50) ? 2 : 0;  // it is asked, and does not end
    });
    const auto patience = loop.StartTimer(10'000, [&] { loop.Quit(1); });
    EXPECT_EQ(loop.Run(), 0) << "it is not heard";
    EXPECT_EQ(heard, "raise close");
    ExpectGoodEnd(second);

    LocalInstance third(home.Path());
    EXPECT_TRUE(third.IsOpen());
    first->Leave();
    EXPECT_FALSE(third.IsOpen());
    EXPECT_TRUE(third.Close(0));
    EXPECT_TRUE(third.Open({}));
    first.reset();
    EXPECT_TRUE(LocalInstance(home.Path()).IsOpen()) << "the first one took nothing with it";
}

TEST_F(LocalInstanceTest, AFolderThatOthersCanEnterIsNotTrusted) {
    std::filesystem::permissions(runtime.Native(), std::filesystem::perms::all);
    const test::TempFolder temporary;
    ::setenv("TMPDIR", temporary.Native().c_str(), 1);
    LocalInstance instance(home.Path());
    EXPECT_TRUE(instance.Open({}));
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(instance.IsOpen());
    EXPECT_TRUE(std::filesystem::is_empty(runtime.Native()));
    for (const auto& folder : std::filesystem::directory_iterator(temporary.Native()))
        EXPECT_EQ(folder.status().permissions(), std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace orma
