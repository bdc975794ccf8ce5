#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stream/connection_test.h"
#include "stream/jstream_wr_ftp.h"
#include "support/fake_boxes.h"
#include "support/fake_ftp.h"
#include "support/memory_storage.h"

namespace orma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const FtpResult kLost{kFtpConnectionLost, 0, {}};

struct FtpStreamTest : testing::Test {
    test::MemoryStorage storage;
    test::FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    test::FakeFtp server;
    test::FakePatience patience;
    FtpServices services{server, report, patience};
    FtpAccount account{.server = u"srv:2121", .user = u"kim", .password = u"pw", .folder = u"news"};
    JStreamWrFTP stream{services};

    FtpStreamTest() { stream.SetDestination(account, u"mp2"); }
};

TEST(FtpServerText, IsSplitAtItsLastColonButTheFirstCharacter) {
    const std::tuple<Text, Text, int> cases[] = {
        {u"srv:2121", u"srv", 2121}, {u"srv", u"srv", 21},      {u":21", u":21", 21},
        {u"srv:", u"srv", 0},        {u"s:1:22x3", u"s:1", 22}, {u"srv:-4", u"srv", -4}};
    for (const auto& [text, host, port] : cases) {
        EXPECT_EQ(SplitFtpServer(text).host, host);
        EXPECT_EQ(SplitFtpServer(text).port, port);
    }
    EXPECT_GT(SplitFtpServer(u"srv:99999999999999999999999").port, 65535) << "and no overflow";
}

TEST_F(FtpStreamTest, ReportsEachFailureUnderItsNameOrNotAtAll) {
    server.connection = {kFtpRefused, 530, u"530 Login incorrect."};
    stream.OpenForWriting(u"talk");
    EXPECT_FALSE(stream.IsOpen());
    server.connection = {};
    server.creation = {ENOMEM, 0, {}};
    stream.OpenWriterSession(account);
    server.creation = {};
    server.opening = {kFtpRefused, 553, u"553 Could not create file."};
    stream.OpenForWriting(u"talk");
    EXPECT_THAT(boxes.Texts(),
                ElementsAre(u"InternetConnect 12003 530 Login incorrect.", u"InternetOpen 12",
                            u"FtpOpenFile 12003 553 Could not create file."));

    boxes.shown.clear();
    report.SilenceInternetFailures(true);
    stream.OpenForWriting(u"talk");
    report.SilenceInternetFailures(false);
    server.opening = {};
    stream.OpenForWriting(u"talk");
    patience.goOn = false;
    stream.Write("x", 1);
    EXPECT_FALSE(stream.IsOpen());
    patience.goOn = true;
    account.server.clear();
    stream.OpenWriterSession(account);
    EXPECT_FALSE(stream.IsConnected());
    EXPECT_THAT(boxes.Texts(), IsEmpty()) << "a user's Cancel and an empty server need no words";
    server.takesRestart = false;
    server.restart = kLost;
    stream.OpenForWriting(u"talk");
    stream.CloseFile();
    EXPECT_EQ(stream.ResumeOpen(u"talk", 2), JStreamWrFTP::kNoConnection) << "nobody refused";
    boxes.shown.clear();
    account.server = Text(kLongestFtpServer + 1, u'a');
    stream.OpenWriterSession(account);
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Servername not resolved"));
}

TEST_F(FtpStreamTest, TestsTheConnectionInSilence) {
    account.security = TransportSecurity::kImplicit;
    account.server = u"srv";
    EXPECT_TRUE(TestFtpAccount(account, services).loggedIn);
    EXPECT_EQ(server.target.port, 990);
    server.connection = kLost;
    EXPECT_FALSE(TestFtpAccount(account, services).loggedIn);
    EXPECT_THAT(boxes.Texts(), IsEmpty());
}

}  // namespace
}  // namespace orma
