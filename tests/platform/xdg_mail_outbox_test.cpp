#include "platform/posix/xdg_mail_outbox.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/fake_tcp.h"
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
    Install("printf '%s|' \"$@\" >\"${0%/*}/words\"");
    EXPECT_TRUE(outbox.HasMailProgram());
    EXPECT_TRUE(outbox.HandOver(letter, patience));
    const Bytes words = test::ReadFileBytes(folder.Path(u"words"));
    EXPECT_EQ(std::string(words.begin(), words.end()),
              "--utf8|--subject|$(Talk)|--body|two\nlines \xe2\x82\xac|--attach|/a b/talk.wav|"
              "desk@x.org|");
    letter.subject.clear();
    EXPECT_TRUE(outbox.HandOver(letter, patience)) << "it is not needed";

    // A tool that fails did not take it, one that stays did.
    Install("exit 3");
    EXPECT_FALSE(outbox.HandOver(letter, patience));
    Install("exec /bin/sleep 1");
    patience.turns = 3;
    EXPECT_TRUE(outbox.HandOver(letter, patience));
}

}  // namespace
}  // namespace orma
