#include <algorithm>
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
using testing::ElementsAre;
using testing::HasSubstr;
using Script = test::ScriptedFtpServer::Script;

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
        connected = Connect(TransportSecurity::kNone);
    }

    [[nodiscard]] FtpResult Connect(TransportSecurity security) {
        return client->Connect({.host = u"127.0.0.1",
                                .port = server.Port(),
                                .user = u"kim",
                                .password = u"secret",
                                .passive = true,
                                .security = security});
    }
    [[nodiscard]] FtpResult Open(const Text& path) {
        return client->OpenFile(path, Access::kWrite);
    }
    [[nodiscard]] FtpResult Write(std::size_t count) {
        FtpResult result;
        for (std::size_t sent = 0; sent < count && result.Ok(); sent += kBlock)
            result = client->Write(Bytes(std::min(count, kBlock), 'x'));
        return result;
    }
    void Store(const Text& path, ByteSpan bytes) {
        ASSERT_TRUE(Open(path).Ok());
        EXPECT_TRUE(client->Write(bytes).Ok());
        EXPECT_TRUE(client->CloseFile().Ok());
    }
    [[nodiscard]] std::ptrdiff_t Count(const std::string& command) {
        return std::ranges::count(server.Commands(), command);
    }

    static constexpr std::size_t kBlock = 64 * 1024;
    test::ScriptedFtpServer server;
    TimedPatience patience;
    std::unique_ptr<FtpClient> client;
    FtpResult connected;
};

TEST(CurlFtp, SendsWhatIsAskedForAndNothingMore) {
    const Text path = u"/news/a b%.mp2";
    Desk desk({});
    ASSERT_TRUE(desk.connected.Ok());
    desk.Store(path, AsBytes("abc"));
    EXPECT_TRUE(desk.client->Restart(2).Ok());
    desk.Store(path, AsBytes("CDE"));
    std::optional<std::uint64_t> size;
    EXPECT_TRUE(desk.client->RemoteSize(path, size).Ok());
    EXPECT_EQ(size, 5U);
    desk.client->Disconnect();
    EXPECT_THAT(desk.server.Commands(),
                ElementsAre("USER kim", "PASS secret", "PWD", "EPSV", "TYPE I",
                            "STOR /news/a b%.mp2", "REST 2", "EPSV", "REST 2",
                            "STOR /news/a b%.mp2", "TYPE I", "SIZE /news/a b%.mp2", "QUIT"));

    Desk other({});
    EXPECT_EQ(other.Open(u"a\r\nDELE b").code, kFtpBadName);
    EXPECT_EQ(other.client->LookForFolder(u"in\r\nDELE a").code, kFtpBadName);
    EXPECT_EQ(other.client->Connect({.host = u":21"}).code, kFtpNameNotResolved);
    EXPECT_EQ(other.client->Connect({.host = u"127.0.0.1", .port = 1}).code, kFtpCannotConnect);
    EXPECT_EQ(other.Open(u"a").code, kFtpWrongState);
}

TEST(CurlFtp, LooksForAFolderAndGoesBackToTheLogInFolder) {
    Desk desk({.replies = {{"CWD gone", "550 No such folder, secret.\r\n"},
                           {"CWD", "250 Gone there.\r\n"}}});
    EXPECT_TRUE(desk.client->LookForFolder(u"in/to day").Ok());
    EXPECT_EQ(desk.server.Commands().back(), "CWD /") << "at once, not with the next file";
    EXPECT_TRUE(desk.client->LookForFolder({}).Ok());
    EXPECT_EQ(desk.client->LookForFolder(u"gone").reply, u"550 No such folder, ***.");
    desk.Store(u"in/a", AsBytes("abc"));  // counted from the log-in folder, by the same log-in
    std::vector<std::string> places = desk.server.Commands();
    std::erase_if(places, [](const std::string& command) {
        return !command.starts_with("CWD") && !command.starts_with("STOR");
    });
    places.erase(std::ranges::unique(places).begin(), places.end());  // back twice is back
    EXPECT_THAT(places,
                ElementsAre("CWD /", "CWD in/to day", "CWD /", "CWD gone", "CWD /", "STOR in/a"));
    EXPECT_EQ(desk.Count("USER kim"), 1);
}

TEST(CurlFtp, TellsAMissingFileFromAServerThatKnowsNoSizes) {
    const std::tuple<const char*, FtpCode, std::optional<std::uint64_t>> cases[] = {
        {"550 No such file.\r\n", kFtpDone, 0},
        {"502 Not implemented.\r\n", kFtpDone, {}},
        {"213 many\r\n", kFtpDone, {}},
        {"450 Busy.\r\n", kFtpRefused, {}}};
    for (const auto& [reply, code, bytes] : cases) {
        Desk desk({.replies = {{"SIZE", reply}}});
        std::optional<std::uint64_t> size = 7;
        EXPECT_EQ(desk.client->RemoteSize(u"a", size).code, code) << reply;
        EXPECT_EQ(size, bytes) << reply;
    }
}

TEST(CurlFtp, SaysNothingInClearTextWhereProtectionIsAskedFor) {
    for (const auto security : {TransportSecurity::kUpgrade, TransportSecurity::kImplicit}) {
        Desk clear({});
        EXPECT_EQ(clear.Connect(security).code, kFtpNotSecure);
        EXPECT_EQ(clear.Count("USER kim"), 1) << "by the first, unprotected log-in alone";
    }
}

TEST(CurlFtp, StoresNothingWhereTheOffsetIsNotAccepted) {
    for (const char* reply : {"250 Whatever you say.\r\n", "502 No.\r\n"}) {
        Desk desk({.replies = {{"REST", reply}}});
        const FtpResult result = desk.client->Restart(2);
        EXPECT_EQ(result.code, kFtpRefused);
        EXPECT_EQ(result.replyNumber, reply[0] == '2' ? 250 : 502);
        desk.Store(u"a", AsBytes("abc"));  // from the beginning
        EXPECT_EQ(desk.Count("REST 2"), 1);
        EXPECT_EQ(desk.Count("USER kim"), 1) << "a No costs no log-in";
    }
    Desk desk({.replies = {{"STOR", "451 Restart not permitted\r\n"}}});
    ASSERT_TRUE(desk.client->Restart(2).Ok());
    EXPECT_EQ(desk.Open(u"a").reply, u"451 Restart not permitted");
}

TEST(CurlFtp, LogsInAgainOnceWhenTheServerDroppedAnIdleConnection) {
    Desk desk({.dropsIdle = 1});
    for (int file = 0; file < 2; ++file) {
        desk.Store(u"a", AsBytes("abc"));
        std::this_thread::sleep_for(milliseconds(100));
    }
    EXPECT_EQ(desk.Count("USER kim"), 2);
    EXPECT_EQ(desk.Count("STOR a"), 2);
}

TEST(CurlFtp, NeverTakesABrokenUploadForAWholeOne) {
    const std::tuple<std::string, FtpCode, Text> cases[] = {
        {"452-Disk\r\n452 full.\r\n", kFtpRefused, u"452-Disk\n452 full."},
        {"226 Enough.\r\n", kFtpConnectionLost, u""},
        {"", kFtpTimeout, u""}};
    for (const auto& [last, code, reply] : cases) {
        SCOPED_TRACE(last);
        Desk desk({.limit = 1 << 20, .freezesAtLimit = last.empty(), .last = last});
        ASSERT_TRUE(desk.Open(u"a").Ok());
        const FtpResult result = desk.Write(16 * kMuch);
        EXPECT_EQ(result.code, code);
        EXPECT_EQ(result.reply, reply);
        EXPECT_EQ(desk.Write(1).code, code) << "it stays broken";
        EXPECT_EQ(desk.client->CloseFile().code, code);
        EXPECT_EQ(desk.Count("STOR a"), 1) << "and is never begun again";
    }
    for (const std::string last : {"451 Local error.\r\n", ""}) {
        Desk desk({.last = last});
        ASSERT_TRUE(desk.Open(u"a").Ok());
        EXPECT_TRUE(desk.Write(kMuch).Ok());
        EXPECT_EQ(desk.client->CloseFile().code, last.empty() ? kFtpTimeout : kFtpRefused);
    }
}

TEST(CurlFtp, GivesUpAtOnceWhenPatienceIsOver) {
    for (const bool freezes : {true, false}) {  // before it took the data, or after it
        Desk desk({.limit = freezes ? 1U << 20 : SIZE_MAX, .freezesAtLimit = true, .last = ""});
        ASSERT_TRUE(desk.Open(u"a").Ok());
        desk.patience.end = steady_clock::now() + milliseconds(150);
        const FtpResult result = freezes ? desk.Write(16 * kMuch) : desk.client->CloseFile();
        EXPECT_EQ(result.code, kFtpCancelled);
        desk.client.reset();
        EXPECT_LT(steady_clock::now() - desk.patience.end, milliseconds(400));
        EXPECT_GE(desk.patience.asked, 3);
    }
}

TEST(CurlFtp, AHandshakeThatStandsStillCanBeInterrupted) {
    Desk desk({.replies = {{"AUTH", "234 Go on.\r\n"}}, .freezesAt = "AUTH"});
    const auto begin = steady_clock::now();
    std::jthread other([&] {
        while (desk.Count("AUTH TLS") == 0)
            std::this_thread::sleep_for(milliseconds(10));
        desk.client->Interrupt();
    });
    EXPECT_FALSE(desk.Connect(TransportSecurity::kUpgrade).Ok());
    EXPECT_LT(steady_clock::now() - begin, milliseconds(kLimits.connectMs / 2));
}

TEST(CurlFtp, IsNotHurtByWhatAServerSays) {
    Desk mute({.replies = {{"greeting", ""}}});
    EXPECT_EQ(mute.connected.code, kFtpTimeout);
    const Desk refused({.replies = {{"PASS", std::string("530-No\1\0 ", 9) +
                                                 "secret\xFC for \xC4"
                                                 "\r\n530 " +
                                                 std::string(5000, 'b') + "\r\n"}}});
    EXPECT_EQ(refused.connected.code, kFtpRefused);
    EXPECT_EQ(refused.connected.replyNumber, 530);
    EXPECT_THAT(ToUtf8(refused.connected.reply),
                HasSubstr("530-No   ***\u00FC for \u00C4\n530 bbb"));
    EXPECT_EQ(refused.connected.reply.size(), FtpReply::kLongestWords);
    Desk dataless({.replies = {{"EPSV", "229 (|||1|)\r\n"}, {"PASV", "500 No.\r\n"}}});
    EXPECT_FALSE(dataless.Open(u"a").Ok());
}

}  // namespace
}  // namespace orma
