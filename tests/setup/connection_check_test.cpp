#include "setup/connection_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_ftp.h"
#include "support/mail_desk.h"

namespace orma::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using End = ConnectionVerdict::End;

/// A server of each kind, and somebody who tries accounts there.
struct ConnectionCheckTest : testing::Test, MailDesk {
    ConnectionVerdict TryMail() {
        tcp.sends.clear();
        return CheckMailAccount(mailAccount, network, services, patience);
    }
    ~ConnectionCheckTest() override { EXPECT_TRUE(boxes.shown.empty()); }

    FakeFtp ftp;
    NetworkPorts network{ftp, tcp, tls, hash, outbox};
    FtpAccount ftpAccount{.server = u"ftp.news", .user = u"kim", .folder = u"in/today"};
    SmtpAccount mailAccount{
        .server = u"192.0.2.7", .authenticate = true, .user = u"kim", .password = u"S3cret"};
};

TEST_F(ConnectionCheckTest, AnFtpAccountIsGoodWhenItsFolderIsThereOrSaysWhyNot) {
    const auto words = [this](const FtpResult& connection, const FtpResult& inFolder = {}) {
        ftp.connection = connection;
        ftp.folder = inFolder;
        const ConnectionVerdict verdict = CheckFtpAccount(ftpAccount, network, services, patience);
        EXPECT_EQ(verdict.end == End::kOk, connection.Ok() && inFolder.Ok());
        EXPECT_EQ(verdict.end == End::kCancelled, connection.code == kFtpCancelled);
        return verdict.words;
    };
    EXPECT_EQ(words({}), u"Logged in, in clear text.");
    EXPECT_THAT(ftp.log, testing::ElementsAre("CONNECT ftp.news:21", "CWD in/today", "QUIT"));
    EXPECT_EQ(words({}, {kFtpRefused, 550, u"550 No such directory."}),
              u"Logged in, but not into the folder in/today. The server says: 550 No such "
              u"directory.");
    EXPECT_EQ(words({}, {kFtpConnectionLost, 0, {}}), u"The server broke the connection off.");
    EXPECT_EQ(words({kFtpRefused, 530, u"530 Not you."}),
              u"User or password are wrong. The server says: 530 Not you.");
    EXPECT_EQ(words({kFtpRefused, 421, u"421 Full."}),
              u"The server refuses. The server says: 421 Full.");
    EXPECT_EQ(words({kFtpCertificateName, 0, {}}),
              u"The certificate is for another server name: use that one.");
    EXPECT_EQ(words({kFtpCancelled, 0, {}}), u"Cancelled.");
}

TEST_F(ConnectionCheckTest, AMailAccountIsGreetedLoggedInAndLeft) {
    tcp.replies = {"220 mail.news\r\n", "250 hello\r\n", "334 PDEyMz4=\r\n", "235 Go on\r\n",
                   "221 bye\r\n"};
    const ConnectionVerdict verdict = TryMail();
    EXPECT_EQ(verdict.end, End::kOk);
    EXPECT_EQ(verdict.words, u"Logged in, in clear text.");
    EXPECT_TRUE(tcp.replies.empty()) << "it leaves with a good-bye";
    EXPECT_THAT(tcp.Sent(), Not(HasSubstr("MAIL FROM")));

    mailAccount.authenticate = false;
    tcp.replies = {"220 mail.news\r\n", "250 hello\r\n", "221 bye\r\n"};
    EXPECT_EQ(TryMail().words, u"The server answers, in clear text.");
    EXPECT_THAT(tcp.Sent(), Not(HasSubstr("AUTH")));
}

TEST_F(ConnectionCheckTest, AMailAccountThatCannotLogInSaysWhyInOneLine) {
    tcp.replies = {"220 mail.news\r\n", "250 hello\r\n",        "334 PDEyMz4=\r\n",
                   "535 no\r\n",        "334 VXNlcm5hbWU6\r\n", "334 UGFzc3dvcmQ6\r\n",
                   "535 no\r\n",        "221 bye\r\n"};
    const ConnectionVerdict verdict = TryMail();
    EXPECT_EQ(verdict.end, End::kRefused);
    EXPECT_EQ(verdict.words, u"Wrong username or password.");
    tcp.connect = {NetworkResult::End::kFailed};
    EXPECT_EQ(TryMail().words, u"Server not found.");
    tcp.connect = {NetworkResult::End::kGivenUp};
    EXPECT_EQ(TryMail().end, End::kCancelled);
}

}  // namespace
}  // namespace orma::test
