#include "platform/posix/xdg_mail_outbox.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <signal.h>

#include "support/fake_patience.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

TEST(XdgMailOutbox, AToolThatFailsDidNotTakeTheMailOneThatStaysDid) {
    const std::string path = std::getenv("PATH");
    const test::TempFolder folder;
    ::setenv("PATH", folder.Native().c_str(), 1);
    const Text tool = folder.Path(u"xdg-email");
    const OutboxLetter letter{u"desk@x.org", u"", u"", u"/a b/talk.wav"};
    test::FakePatience patience;
    XdgMailOutbox outbox;
    EXPECT_FALSE(outbox.HandOver(letter, patience)) << "it is not there";
    // As the real one, it refuses empty words.
    test::WriteFileBytes(tool,
                         AsBytes("#!/bin/sh\nfor word; do [ -n \"$word\" ] || exit 1; done\n"));
    std::filesystem::permissions(folder.Native(u"xdg-email"), std::filesystem::perms::owner_all);
    EXPECT_TRUE(outbox.HandOver(letter, patience));
    test::WriteFileBytes(tool, AsBytes("#!/bin/sh\nexit 3\n"));
    EXPECT_FALSE(outbox.HandOver(letter, patience));
    test::WriteFileBytes(tool, AsBytes("#!/bin/sh\nexec /bin/sleep 1\n"));
    patience.turns = 3;
    EXPECT_TRUE(outbox.HandOver(letter, patience));
    ::setenv("PATH", path.c_str(), 1);
}

/// A window blocks the signals that it takes from a descriptor; its child must be able to be ended.
TEST_F(XdgMailOutboxTest, TheToolIsStartedWithNoSignalBlocked) {
    sigset_t ends;
    sigset_t before;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &ends, &before), 0);
    Install("kill -TERM $$; exit 0");
    EXPECT_FALSE(outbox.HandOver(letter, patience)) << "the signal ended it";
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace
}  // namespace orma
