#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/curl/curl_ftp_clients.h"
#include "platform/curl/ftp_reply.h"
#include "platform/scripted_ftp_server.h"

namespace orma {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::ScriptedFtpServer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using AtLimit = ScriptedFtpServer::AtLimit;
using Script = ScriptedFtpServer::Script;

constexpr std::size_t kMuch = 8 << 20;
constexpr FtpLimits kLimits{.connectMs = 2000, .replyMs = 1000, .stallMs = 500};

/// Patience for a while; remembers whether it was asked often enough.
struct TimedPatience : Patience {
    [[nodiscard]] bool GoOn() override {
        ++asked;
        return steady_clock::now() < end;
    }
    steady_clock::time_point end = steady_clock::time_point::max();
    int asked = 0;
};

/// A client at a server of this script, logged in unless that fails.
struct Desk {
    explicit Desk(Script script) : server(std::move(script)) {
        FtpResult created;
        client = CurlFtpClients(kLimits).Create(patience, created);
        connected = client->Connect({.host = u"127.0.0.1",
                                     .port = server.Port(),
                                     .user = u"kim",
                                     .password = u"secret",
                                     .passive = true});
    }

    [[nodiscard]] FtpResult WriteAll(std::size_t count) {
        const Bytes block(64 * 1024, 'x');
        FtpResult result;
        for (std::size_t sent = 0; sent < count && result.Ok(); sent += block.size())
            result = client->Write(block);
        return result;
    }
    [[nodiscard]] FtpResult Write(std::string_view text) {
        return client->Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
    [[nodiscard]] int Count(const std::string& command) {
        const auto commands = server.Commands();
        return static_cast<int>(std::count(commands.begin(), commands.end(), command));
    }

    ScriptedFtpServer server;
    TimedPatience patience;
    std::unique_ptr<FtpClient> client;
    FtpResult connected;
};

TEST(CurlFtp, SendsWhatIsAskedForAndNothingMore) {
    Desk desk({});
    ASSERT_TRUE(desk.connected.Ok());
    ASSERT_TRUE(desk.client->OpenFile(u"/news/a b%.mp2", Access::kWrite).Ok());
    EXPECT_TRUE(desk.Write("abc").Ok());
    EXPECT_TRUE(desk.client->CloseFile().Ok());
    EXPECT_TRUE(desk.client->Restart(2).Ok());
    ASSERT_TRUE(desk.client->OpenFile(u"/news/a b%.mp2", Access::kWrite).Ok());
    EXPECT_TRUE(desk.Write("CDE").Ok());
    EXPECT_TRUE(desk.client->CloseFile().Ok());
    std::optional<std::uint64_t> size;
    EXPECT_TRUE(desk.client->RemoteSize(u"/news/a b%.mp2", size).Ok());
    EXPECT_EQ(size, 5U);
    Bytes into(4);
    std::size_t got = 0;
    ASSERT_TRUE(desk.client->OpenFile(u"/news/a b%.mp2", Access::kRead).Ok());
    EXPECT_TRUE(desk.client->Read(into, got).Ok());
    EXPECT_EQ(into, (Bytes{'a', 'b', 'C', 'D'}));
    EXPECT_TRUE(desk.client->Read(into, got).Ok());
    EXPECT_EQ(got, 1U) << "the end of the file";
    EXPECT_TRUE(desk.client->CloseFile().Ok());
    desk.client->Disconnect();
    EXPECT_THAT(
        desk.server.Commands(),
        ElementsAre("USER kim", "PASS secret", "PWD", "EPSV", "TYPE I", "STOR /news/a b%.mp2",
                    "REST 2", "EPSV", "REST 2", "STOR /news/a b%.mp2", "TYPE I",
                    "SIZE /news/a b%.mp2", "EPSV", "RETR /news/a b%.mp2", "QUIT"));

    Desk other({});
    EXPECT_EQ(other.client->OpenFile(u"a\r\nDELE b", Access::kWrite).code, kFtpBadName);
    EXPECT_EQ(other.client->Connect({.host = u":21"}).code, kFtpNameNotResolved);
    EXPECT_EQ(other.client->Connect({.host = u"127.0.0.1", .port = 1}).code, kFtpCannotConnect);
    EXPECT_EQ(other.client->OpenFile(u"a", Access::kWrite).code, kFtpWrongState);
}

TEST(CurlFtp, TellsAMissingFileFromAServerThatKnowsNoSizes) {
    struct Case {
        const char* reply;
        SystemError code;
        std::optional<std::uint64_t> size;
    };
    for (const Case& c : {Case{"550 No such file.\r\n", kFtpDone, 0},
                          {"502 Not implemented.\r\n", kFtpDone, {}},
                          {"213 many\r\n", kFtpDone, {}},
                          {"450 Busy.\r\n", kFtpRefused, {}}}) {
        Desk desk({.replies = {{"SIZE", c.reply}}});
        std::optional<std::uint64_t> size = 7;
        EXPECT_EQ(desk.client->RemoteSize(u"a", size).code, c.code) << c.reply;
        EXPECT_EQ(size, c.size) << c.reply;
    }
}

TEST(CurlFtp, SaysNothingInClearTextWhereProtectionIsAskedFor) {
    for (const auto security : {TransportSecurity::kUpgrade, TransportSecurity::kImplicit}) {
        Desk clear({});
        EXPECT_EQ(clear.client
                      ->Connect({.host = u"127.0.0.1",
                                 .port = clear.server.Port(),
                                 .user = u"kim",
                                 .password = u"secret",
                                 .security = security})
                      .code,
                  kFtpNotSecure);
        EXPECT_EQ(clear.Count("USER kim"), 1) << "by the first, unprotected log-in alone";
    }
}

TEST(CurlFtp, StoresNothingWhereTheOffsetIsNotAccepted) {
    for (const char* reply : {"250 Whatever you say.\r\n", "502 No.\r\n"}) {
        Desk desk({.replies = {{"REST", reply}}});
        const FtpResult result = desk.client->Restart(2);
        EXPECT_EQ(result.code, kFtpRefused);
        EXPECT_EQ(result.replyNumber, reply[0] == '2' ? 250 : 502);
        ASSERT_TRUE(desk.client->OpenFile(u"a", Access::kWrite).Ok()) << "from the beginning";
        EXPECT_TRUE(desk.client->CloseFile().Ok());
        EXPECT_EQ(desk.Count("REST 2"), 1);
        EXPECT_EQ(desk.Count("USER kim"), 1) << "a No costs no log-in";
    }
    Desk desk({.replies = {{"STOR", "451 Restart not permitted\r\n"}}});
    ASSERT_TRUE(desk.client->Restart(2).Ok());
    EXPECT_EQ(desk.client->OpenFile(u"a", Access::kWrite).reply, u"451 Restart not permitted");
}

TEST(CurlFtp, LogsInAgainOnceWhenTheServerDroppedAnIdleConnection) {
    Desk desk({.dropsIdle = 1});
    for (int file = 0; file < 2; ++file) {
        ASSERT_TRUE(desk.client->OpenFile(u"a", Access::kWrite).Ok());
        EXPECT_TRUE(desk.Write("abc").Ok());
        EXPECT_TRUE(desk.client->CloseFile().Ok());
        std::this_thread::sleep_for(milliseconds(100));
    }
    EXPECT_EQ(desk.Count("USER kim"), 2);
    EXPECT_EQ(desk.Count("STOR a"), 2);
}

TEST(CurlFtp, NeverTakesABrokenUploadForAWholeOne) {
    struct Case {
        AtLimit atLimit;
        const char* last;
        SystemError code;
        Text reply;
    };
    for (const Case& c :
         {Case{AtLimit::kRefuse, "452-Disk\r\n452 full.\r\n", kFtpRefused, u"452-Disk\n452 full."},
          Case{AtLimit::kRefuse, "226 Enough.\r\n", kFtpConnectionLost, u""},
          Case{AtLimit::kCloseBoth, "", kFtpConnectionLost, u""},
          Case{AtLimit::kCloseControl, "", kFtpConnectionLost, u""},
          Case{AtLimit::kFreeze, "", kFtpTimeout, u""}}) {
        SCOPED_TRACE(c.last + std::to_string(static_cast<int>(c.atLimit)));
        Desk desk({.limit = 1 << 20, .atLimit = c.atLimit, .last = c.last});
        ASSERT_TRUE(desk.client->OpenFile(u"a", Access::kWrite).Ok());
        const FtpResult result = desk.WriteAll(16 * kMuch);
        EXPECT_EQ(result.code, c.code);
        EXPECT_EQ(result.reply, c.reply);
        EXPECT_EQ(desk.Write("more").code, c.code) << "it stays broken";
        EXPECT_EQ(desk.client->CloseFile().code, c.code);
        EXPECT_EQ(desk.Count("STOR a"), 1) << "and is never begun again";
    }
    struct Ending {
        const char* last;
        SystemError code;
    };
    for (const Ending& e : {Ending{"451 Local error.\r\n", kFtpRefused}, {"", kFtpTimeout}}) {
        Desk desk({.last = e.last});
        ASSERT_TRUE(desk.client->OpenFile(u"a", Access::kWrite).Ok());
        EXPECT_TRUE(desk.WriteAll(kMuch).Ok());
        EXPECT_EQ(desk.client->CloseFile().code, e.code) << "not confirmed";
    }
}

TEST(CurlFtp, GivesUpAtOnceWhenPatienceIsOver) {
    const auto isQuick = [](steady_clock::time_point end) {
        return steady_clock::now() - end < milliseconds(400);
    };
    Desk frozen({.limit = 1 << 20, .atLimit = AtLimit::kFreeze});
    ASSERT_TRUE(frozen.client->OpenFile(u"a", Access::kWrite).Ok());
    frozen.patience.end = steady_clock::now() + milliseconds(100);
    EXPECT_EQ(frozen.WriteAll(16 * kMuch).code, kFtpCancelled);
    frozen.client->Disconnect();
    EXPECT_TRUE(isQuick(frozen.patience.end));

    Desk silent({.last = ""});
    ASSERT_TRUE(silent.client->OpenFile(u"a", Access::kWrite).Ok());
    silent.patience.end = steady_clock::now() + milliseconds(150);
    EXPECT_EQ(silent.client->CloseFile().code, kFtpCancelled);
    silent.client.reset();
    EXPECT_TRUE(isQuick(silent.patience.end));
    EXPECT_GE(silent.patience.asked, 3);
}

TEST(CurlFtp, AHandshakeThatStandsStillCanBeInterrupted) {
    Desk desk({.replies = {{"AUTH", "234 Go on.\r\n"}}, .freezesAt = "AUTH"});
    const auto begin = steady_clock::now();
    std::jthread other([&] {
        while (desk.Count("AUTH TLS") == 0)
            std::this_thread::sleep_for(milliseconds(10));
        desk.client->Interrupt();
    });
    EXPECT_FALSE(desk.client
                     ->Connect({.host = u"127.0.0.1",
                                .port = desk.server.Port(),
                                .security = TransportSecurity::kUpgrade})
                     .Ok());
    EXPECT_LT(steady_clock::now() - begin, milliseconds(kLimits.connectMs / 2));
}

TEST(CurlFtp, IsNotHurtByWhatAServerSays) {
    Desk endless({.greeting = "220-" + std::string(1000, 'a') + "\r\n", .greetsForEver = true});
    EXPECT_FALSE(endless.connected.Ok());
    Desk mute({.greeting = ""});
    EXPECT_EQ(mute.connected.code, kFtpTimeout);
    Desk refused({.replies = {{"PASS", std::string("530-No\1\0 ", 9) +
                                           "secret\xFC for \xC4"
                                           "\r\n530 " +
                                           std::string(5000, 'b') + "\r\n"}}});
    EXPECT_EQ(refused.connected.code, kFtpRefused);
    EXPECT_EQ(refused.connected.replyNumber, 530);
    EXPECT_THAT(ToUtf8(refused.connected.reply),
                HasSubstr("530-No   ***\u00FC for \u00C4\n530 bbb"));
    EXPECT_THAT(ToUtf8(refused.connected.reply), Not(HasSubstr("secret")));
    EXPECT_EQ(refused.connected.reply.size(), FtpReply::kLongestWords);
    Desk dataless({.replies = {{"EPSV", "229 (|||1|)\r\n"}, {"PASV", "500 No.\r\n"}}});
    EXPECT_FALSE(dataless.client->OpenFile(u"a", Access::kWrite).Ok());
}

}  // namespace
}  // namespace orma
