#include "platform/posix/shell_commands.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orma::test {
namespace {

TEST(ShellCommands, StartTheUsersLineWithItsArgumentAndDoNotWaitForIt) {
    TempFolder folder;
    const Text argument = folder.Path(u"it's \"one\" $HOME; path.opr");
    // Waits for us, and then writes its argument to a file.
    const Text line = u"cd '" + folder.Path() +
                      u"' && for i in $(seq 500); do [ -e go ] && break; sleep 0.01; done; "
                      u"printf %s \"$1\" > part; mv part out";
    ASSERT_TRUE(ShellCommands().StartCommand(line, argument));
    EXPECT_FALSE(std::filesystem::exists(folder.Native(u"out")));
    WriteFileBytes(folder.Path(u"go"), {});
    for (int i = 0; i < 500 && !std::filesystem::exists(folder.Native(u"out")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(std::ranges::equal(ReadFileBytes(folder.Path(u"out")), AsBytes(ToUtf8(argument))));
}

}  // namespace
}  // namespace orma::test
