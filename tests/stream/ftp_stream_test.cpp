#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"
#include "stream/connection_test.h"
#include "stream/jstream_wr_ftp.h"
#include "support/fake_boxes.h"
#include "support/fake_ftp.h"
#include "support/memory_storage.h"

namespace orma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kGoodOpen = JStream::kGood | JStream::kOpen;
const FtpResult kLost{kFtpConnectionLost, 0, {}};

struct FtpStreamTest : testing::Test {
    test::MemoryStorage storage;
    test::FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    test::FakeFtp server;
    test::FakePatience patience;
    FtpServices services{server, report, patience};
    FtpAccount account{.server = u"srv:2121", .user = u"kim", .password = u"pw", .folder = u"news"};
    test::TraceLines trace;
    JStreamWrFTP stream{services};

    FtpStreamTest() { stream.SetDestination(account, u"mp2"); }

    void Write(const std::string& bytes) {
        stream.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }
    [[nodiscard]] std::string File(const Text& path) {
        const Bytes& bytes = server.files[path];
        return {bytes.begin(), bytes.end()};
    }
};

TEST(FtpServerText, IsSplitAtItsLastColonButTheFirstCharacter) {
    const auto split = [](const Text& text) {
        const FtpServerText server = SplitFtpServer(text);
        return std::pair(server.host, server.port);
    };
    EXPECT_EQ(split(u"srv:2121"), std::pair(Text(u"srv"), 2121));
    EXPECT_EQ(split(u"srv"), std::pair(Text(u"srv"), 21));
    EXPECT_EQ(split(u":21"), std::pair(Text(u":21"), 21));
    EXPECT_EQ(split(u":"), std::pair(Text(u":"), 21));
    EXPECT_EQ(split(u"srv:"), std::pair(Text(u"srv"), 0));
    EXPECT_EQ(split(u"s:1:22x3"), std::pair(Text(u"s:1"), 22));
    EXPECT_EQ(split(u"srv:-4"), std::pair(Text(u"srv"), -4));
    EXPECT_GT(split(u"srv:99999999999999999999999").second, 65535) << "no port, and no overflow";
    EXPECT_EQ(SplitFtpServer(u"srv", 990).port, 990);
}

TEST_F(FtpStreamTest, ReadsExactlyOrNothing) {
    server.files[u"x"] = {1, 2, 3};
    stream.OpenWriterSession(account);
    stream.OpenRemoteFile(u"x", true);
    EXPECT_EQ(stream.Status(), kGoodOpen | JStream::kReading);
    Write("ignored");
    Bytes buffer(2, 9);
    stream.Read(buffer.data(), 2);
    EXPECT_EQ(buffer, (Bytes{1, 2}));
    stream.Read(buffer.data(), 2);
    EXPECT_EQ(buffer, (Bytes{0, 0}));
    EXPECT_FALSE(stream.Has(JStream::kGood));
    EXPECT_EQ(boxes.shown.size(), 1U) << "the end of the file is a failure";
    EXPECT_EQ(server.files[u"x"], (Bytes{1, 2, 3}));
    stream.OpenRemoteFile(u"none", true);
    EXPECT_FALSE(stream.Has(JStream::kGood));
    EXPECT_EQ(boxes.shown.size(), 1U) << "a failed open for reading is silent";
}

TEST_F(FtpStreamTest, ReportsEachFailureUnderItsNameOrNotAtAll) {
    stream.OpenRemoteFile(u"x", true);
    server.connection = {kFtpRefused, 530, u"530 Login incorrect."};
    stream.OpenForWriting(u"talk");
    EXPECT_FALSE(stream.IsOpen());
    EXPECT_TRUE(trace.Contain("JStreamWrFTP InternetConnect"));
    stream.OpenRemoteFile(u"x", false);
    server.creation = {ENOMEM, 0, {}};
    stream.OpenWriterSession(account);
    EXPECT_THAT(boxes.Texts(),
                ElementsAre(u"InternetConnect 12019", u"InternetConnect 12003 530 Login incorrect.",
                            u"InternetConnect 12003 530 Login incorrect.", u"InternetOpen 12"));
    boxes.shown.clear();
    server.creation = {};
    server.connection = {};
    server.opening = {kFtpRefused, 553, u"553 Could not create file."};
    stream.OpenForWriting(u"talk");
    report.SilenceInternetFailures(true);
    stream.OpenForWriting(u"talk");
    report.SilenceInternetFailures(false);
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"FtpOpenFile 12003 553 Could not create file."));

    boxes.shown.clear();
    server.opening = {};
    stream.OpenForWriting(u"talk");
    patience.goOn = false;
    Write("x");
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
