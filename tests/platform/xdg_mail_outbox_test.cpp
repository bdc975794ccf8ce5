#include "platform/posix/xdg_mail_outbox.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <signal.h>

#include "support/fake_patience.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

/// A folder that alone is searched for programs.
struct XdgMailOutboxTest : testing::Test {
    XdgMailOutboxTest() { ::setenv("PATH", folder.Native().c_str(), 1); }
    ~XdgMailOutboxTest() override { ::setenv("PATH", path.c_str(), 1); }

    /// Installs a mail tool with these shell commands that, as the real one, refuses empty words.
    void Install(const std::string& commands) {
        const std::string script =
            "#!/bin/sh\nfor word; do [ -n \"$word\" ] || exit 1; done\n" + commands + "\n";
        test::WriteFileBytes(folder.Path(u"xdg-email"), AsBytes(script));
        std::filesystem::permissions(folder.Native(u"xdg-email"),
                                     std::filesystem::perms::owner_all);
    }

    std::string path = std::getenv("PATH");
    test::TempFolder folder;
    test::FakePatience patience;
    XdgMailOutbox outbox;
    OutboxLetter letter{u"desk@x.org", u"$(Talk)", u"two\nlines \u20ac", u"/a b/talk.wav"};
};

TEST_F(XdgMailOutboxTest, HandsEveryTextOverAsItIs) {
    EXPECT_FALSE(outbox.HasMailProgram());
    EXPECT_FALSE(outbox.HandOver(letter, patience));
    Install("printf '%s|' \"$@\" >\"$(dirname \"$0\")/words\"");
    ::setenv("PATH", (folder.Native().string() + ":" + path).c_str(), 1);
    EXPECT_TRUE(outbox.HasMailProgram());
    EXPECT_TRUE(outbox.HandOver(letter, patience));
    const Bytes words = test::ReadFileBytes(folder.Path(u"words"));
    EXPECT_EQ(std::string(words.begin(), words.end()),
              "--utf8|--subject|$(Talk)|--body|two\nlines \xe2\x82\xac|--attach|/a b/talk.wav|"
              "desk@x.org|");
    letter.subject.clear();
    letter.body.clear();
    EXPECT_TRUE(outbox.HandOver(letter, patience)) << "neither is needed";
}

TEST_F(XdgMailOutboxTest, AToolThatFailsDidNotTakeItOneThatStaysDid) {
    Install("exit 3");
    EXPECT_FALSE(outbox.HandOver(letter, patience));
    Install("exec /bin/sleep 1");
    patience.turns = 3;
    EXPECT_TRUE(outbox.HandOver(letter, patience));
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
