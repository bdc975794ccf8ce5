#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/curl/curl_ftp_clients.h"
#include "platform/scripted_ftp_server.h"
#include "support/fake_patience.h"

namespace orma {
namespace {

using test::ScriptedFtpServer;
using testing::ElementsAre;
using testing::IsSupersetOf;

/// A client that is logged in at a server which answers so when it is to go to the folder "in"; to
/// others it lets everybody go.
struct Desk {
    explicit Desk(const std::string& answer)
        : server({.replies = {{"CWD in", answer}, {"CWD", "250 Gone.\r\n"}}}) {
        FtpResult created;
        client = CurlFtpClients().Create(patience, created);
        EXPECT_TRUE(client
                        ->Connect({.host = u"127.0.0.1",
                                   .port = server.Port(),
                                   .user = u"kim",
                                   .password = u"secret",
                                   .passive = true})
                        .Ok());
    }

    /// What the server was told of folders and files.
    [[nodiscard]] std::vector<std::string> Places() {
        std::vector<std::string> places = server.Commands();
        std::erase_if(places, [](const std::string& command) {
            return !command.starts_with("CWD") && !command.starts_with("STOR");
        });
        return places;
    }

    ScriptedFtpServer server;
    test::FakePatience patience;
    std::unique_ptr<FtpClient> client;
};

TEST(CurlFtpFolder, IsGoneToAndLeftAgain) {
    Desk desk("250 There you are.\r\n");
    EXPECT_TRUE(desk.client->LookForFolder(u"in/to day").Ok());
    EXPECT_TRUE(desk.client->LookForFolder(u"/in").Ok());
    EXPECT_TRUE(desk.client->LookForFolder({}).Ok());
    EXPECT_TRUE(desk.client->OpenFile(u"in/a.mp2", Access::kWrite).Ok());
    EXPECT_TRUE(desk.client->CloseFile().Ok());
    // Each time back to the log-in folder, from where the file's name counts.
    EXPECT_THAT(desk.Places(), ElementsAre("CWD /", "CWD in/to day", "CWD /", "CWD /in", "CWD /",
                                           "STOR in/a.mp2"));
}

TEST(CurlFtpFolder, ThatIsNotThereIsToldInTheServersWords) {
    Desk desk("550 No such folder, not with secret either.\r\n");
    const FtpResult result = desk.client->LookForFolder(u"in");
    EXPECT_EQ(result.code, kFtpRefused);
    EXPECT_EQ(result.replyNumber, 550);
    EXPECT_EQ(result.reply, u"550 No such folder, not with *** either.");
    EXPECT_EQ(desk.client->LookForFolder(u"in\r\nDELE a").code, kFtpBadName);
    // The log-in is still good.
    EXPECT_TRUE(desk.client->OpenFile(u"a.mp2", Access::kWrite).Ok());
    EXPECT_TRUE(desk.client->CloseFile().Ok());
    EXPECT_THAT(desk.server.Commands(), IsSupersetOf({"CWD in", "STOR a.mp2"}));
    const auto commands = desk.server.Commands();
    EXPECT_EQ(std::ranges::count(commands, "USER kim"), 1);
}

}  // namespace
}  // namespace orma
