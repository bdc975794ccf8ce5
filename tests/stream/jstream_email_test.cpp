#include "stream/jstream_email.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace_lines.h"
#include "stream/base64_encoder.h"
#include "support/mail_desk.h"

namespace orma {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::deque<std::string> kPlainServer = {
    "220 here\r\n",  "250 hello\r\n", "250 sender\r\n", "250 recipient\r\n",
    "354 go on\r\n", "250 taken\r\n", "221 bye\r\n"};

const std::string kMessage =
    "From: me@x.org\r\nTo: desk@x.org\r\nSubject: Talk\r\nMIME-Version: 1.0\r\n"
    "Content-Type: multipart/mixed; BOUNDARY=\"JStreamSmtp\"\r\n"
    "\r\n--JStreamSmtp\r\nContent-Type: text/plain\r\n\r\nBody\r\n..two\r\n"
    "\r\n--JStreamSmtp\r\nContent-Type: application/octet-stream; name=\"talk.wav\"\r\n"
    "Content-Transfer-Encoding: base64\r\n"
    "Content-Disposition: attachment; filename=\"talk.wav\"\r\n\r\n"
    "Zm9vYmE=\r\n--JStreamSmtp\r\n\r\n--JStreamSmtp--\r\n\r\n";

struct JStreamEmailTest : testing::Test {
    bool Open() { return mail.OpenMail(delivery, message); }

    /// The server answers as a good one does, but for one step.
    void Answer(std::size_t step = 0, const std::string& reply = kPlainServer[0]) {
        desk.tcp.replies = kPlainServer;
        desk.tcp.replies[step] = reply;
    }
    /// It answers so many steps and then hangs up.
    void AnswerFirst(std::size_t steps) {
        Answer();
        desk.tcp.replies.resize(steps);
    }

    /// A whole mail; true when it is said to have arrived.
    bool Send() {
        if (!Open()) return false;
        for (const char* piece : {"f", "oo", "ba"})
            mail.Write(piece, static_cast<std::uint32_t>(std::strlen(piece)));
        writerSawIt = !mail.Has(JStream::kGood);
        return mail.CloseMail();
    }
    void AskForLogIn() {
        delivery.account.authenticate = true;
        delivery.account.user = u"tim";
        delivery.account.password = u"tanstaaftanstaaf";
    }

    test::MailDesk desk;
    MailDelivery delivery{.account = {.server = u"mail.x.org"}};
    MailMessage message{u"desk@x.org", u"Talk", u"me@x.org", "Body\r\n..two", u"talk.wav"};
    JStreamEMAIL mail{desk.mail};
    bool writerSawIt = false;  // the attachment broke off: then it is the job that tells
};

TEST_F(JStreamEmailTest, SpeaksPlainSmtpToTheByte) {
    Answer();
    EXPECT_TRUE(Send());
    EXPECT_THAT(desk.boxes.shown, IsEmpty());
    EXPECT_EQ(desk.tcp.port, 25);
    EXPECT_EQ(desk.tcp.Sent(),
              "HELO localdomain\r\nMAIL FROM: <me@x.org>\r\n"
              "RCPT TO: <desk@x.org>\r\nDATA\r\n" +
                  kMessage + "\r\n.\r\nquit\r\n");
    EXPECT_EQ(desk.bytesSent, desk.tcp.Sent().size());
    EXPECT_FALSE(desk.tcp.isOpen);

    Answer();
    ASSERT_TRUE(Open());
    mail.Write("foo", 3);
    mail.AbandonMail();
    EXPECT_THAT(desk.tcp.Sent(), testing::EndsWith("\r\n\r\nZm9v")) << "it is never ended";
    EXPECT_FALSE(mail.CloseMail());
}

TEST_F(JStreamEmailTest, ClaimsNothingWhenTheServerGoesAtAnyStep) {
    for (std::size_t step = 0; step + 1 < kPlainServer.size(); ++step) {
        for (const bool silent : {false, true}) {
            AnswerFirst(step);
            if (silent) desk.tcp.replies.emplace_back();
            EXPECT_FALSE(Send()) << step;
            EXPECT_FALSE(desk.tcp.isOpen);
        }
    }
    EXPECT_EQ(desk.boxes.shown.size(), 12U) << "each time the user is told";
    desk.tcp.sends.clear();
    Answer();
    ASSERT_TRUE(Send());
    const std::size_t beforeQuit = desk.tcp.sends.size() - 1;
    for (std::size_t sends = 0; sends <= beforeQuit; ++sends) {
        Answer();
        desk.tcp.sends.clear();
        desk.tcp.failingSend = sends;
        desk.boxes.shown.clear();
        writerSawIt = false;
        EXPECT_EQ(Send(), sends == beforeQuit) << sends;
        const bool isTold = !desk.boxes.shown.empty() || writerSawIt;
        EXPECT_EQ(isTold, sends != beforeQuit) << sends;
    }
}

TEST_F(JStreamEmailTest, AUserWhoGivesUpSeesNoBox) {
    desk.tcp.silence = {NetworkResult::End::kGivenUp};
    for (std::size_t step = 0; step + 1 < kPlainServer.size(); ++step) {
        AnswerFirst(step);
        desk.tcp.replies.resize(step + 2);  // silent, also to "quit"
        EXPECT_FALSE(Send());
    }
    desk.tcp.find = {NetworkResult::End::kGivenUp};
    EXPECT_FALSE(Send());
    EXPECT_THAT(desk.boxes.shown, IsEmpty());
}

TEST_F(JStreamEmailTest, ANameIsLookedUpADottedAddressBackwards) {
    desk.tcp.find = {NetworkResult::End::kFailed};
    for (const Text server : {u"mail.x.org\n", u"10.0.0.1\n", u"[x]"}) {
        delivery.account.server = server;
        EXPECT_FALSE(Open());
        EXPECT_EQ(desk.boxes.shown.back().text, u"Server not found.");
    }
    EXPECT_THAT(desk.tcp.lookUps,
                ElementsAre("name mail.x.org", "address 10.0.0.1\n", "address [x]"));
}

TEST_F(JStreamEmailTest, LogsInAndKeepsThePasswordToItself) {
    test::TraceLines trace;
    AskForLogIn();
    const std::string challenge =
        "334 PDE4OTYuNjk3MTcwOTUyQHBvc3RvZmZpY2UucmVzdG9uLm1jaS5uZXQ+\r\n";
    desk.tcp.replies = {"220 x\r\n", "250 x\r\n", challenge,    "535 no\r\n",
                        "334 x\r\n", "334 x\r\n", "235 yes\r\n"};
    EXPECT_FALSE(Open()) << "the server then hangs up";
    desk.tcp.sends.resize(6);
    // The response is that of the example in RFC 2195.
    EXPECT_THAT(desk.tcp.sends,
                ElementsAre("HELO localdomain\r\n", "AUTH CRAM-MD5\r\n",
                            "dGltIGI5MTNhNjAyYzdlZGE3YTQ5NWI0ZTZlNzMzNGQzODkw\r\n",
                            "AUTH LOGIN\r\n", "dGlt\r\n", "dGFuc3RhYWZ0YW5zdGFhZg==\r\n"));
    for (const char* line : {"username: tim", "password: ***", "smtp: logging in OK",
                             "challenge: <1896.697170952@postoffice.reston.mci.net>"})
        EXPECT_TRUE(trace.Contain(line)) << line;
    for (const char* secret : {"tanstaaf", "b913a602", "dGltIGI5", "dGFuc3Rh"})
        EXPECT_THAT(trace.lines, Not(Contains(HasSubstr(secret))));
}

TEST_F(JStreamEmailTest, WithoutADigestNoPasswordIsSentInItsPlace) {
    struct NoHash : KeyedHash {
        bool HmacMd5(ByteSpan, ByteSpan, std::array<std::uint8_t, 16>&) override { return false; }
    } noHash;
    MailServices services{desk.tcp,      desk.tls,      noHash,        desk.outbox,
                          desk.services, desk.patience, desk.bytesSent};
    JStreamEMAIL without{services};
    AskForLogIn();
    desk.tcp.replies = {"220 here\r\n", "250 hello\r\n", "334 PDE+\r\n", "535 called off\r\n"};
    EXPECT_FALSE(without.OpenMail(delivery, message));
    EXPECT_THAT(desk.tcp.Sent(), testing::StartsWith("HELO localdomain\r\nAUTH CRAM-MD5\r\n*\r\n"));
    EXPECT_THAT(desk.tcp.Sent(), Not(HasSubstr("LOGIN")));
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{u"No log-in: this system\nrefuses MD5."});
}

TEST_F(JStreamEmailTest, NoTextFromOutsideBecomesALineOfItsOwn) {
    Answer();
    message.subject = u"a\r\nBcc: all@x.org";
    message.recipient = u"d@x.org\nDATA";
    message.sender = u"m@x.org>\rRSET";
    message.attachmentName = u"a\"b\\\u20ac\u4e2d\n.wav";
    message.body = "\x80 as it is";
    ASSERT_TRUE(Send());
    const std::string sent = desk.tcp.Sent();
    EXPECT_THAT(sent, HasSubstr("Subject: a  Bcc: all@x.org\r\nMIME"));
    EXPECT_THAT(sent, HasSubstr("RCPT TO: <d@x.org DATA>\r\n"));
    EXPECT_THAT(sent, HasSubstr("MAIL FROM: <m@x.org> RSET>\r\n"));
    EXPECT_THAT(sent, HasSubstr("name=\"a'b_\x80? .wav\"\r\n"));
    EXPECT_THAT(sent, HasSubstr("\r\n\r\n\x80 as it is\r\n"));
}

TEST_F(JStreamEmailTest, ATextThatWouldEndTheMessageIsRefusedBeforeItIsSent) {
    for (const char* body : {".", "a\r\n.\r\nb", "a\n.\nb", "a\r\n."}) {
        Answer();
        message.body = body;
        EXPECT_FALSE(Open());
        EXPECT_EQ(desk.boxes.shown.size(), 1U);
        EXPECT_THAT(desk.tcp.Sent(), Not(HasSubstr("MAIL")));
        desk.boxes.shown.clear();
    }
}

TEST_F(JStreamEmailTest, NothingGoesInClearTextWhenTlsCannotBeHad) {
    AskForLogIn();
    const std::string offer = "250-x\r\n250 STARTTLS\r\n";
    const std::string go = "220 go\r\n";
    const std::tuple<std::string, std::string, TlsFailure, Text> cases[] = {
        {"250-x\r\n250 XSTARTTLS\r\n", go, {}, u"Server offers\nno TLS."},
        {offer, "454 no\r\n", {}, u"Server offers\nno TLS."},
        {offer, go + "250 evil\r\n", {}, u"Clear text after STARTTLS:\nconnection not safe."},
        {offer, go, TlsFailure::kTrustStore, u"Cannot read the trusted\ncertificates."},
        {offer, go, TlsFailure::kUntrusted, u"Certificate of the server\nis not trusted."},
        {offer, go, TlsFailure::kHandshake, u"No TLS connection\nwith the server."}};
    delivery.account.security = TransportSecurity::kUpgrade;
    for (const auto& [offers, answer, failure, text] : cases) {
        desk.tls.failure = failure;
        desk.tcp.replies = {"220 x\r\n", offers, answer};
        EXPECT_FALSE(Open());
        EXPECT_EQ(desk.boxes.shown.back().text, text);
    }
    delivery.account.security = TransportSecurity::kImplicit;
    EXPECT_FALSE(Open());
    EXPECT_EQ(desk.boxes.shown.back().text, u"No TLS connection\nwith the server.");
    for (const char* protectedOnly : {"AUTH", "MAIL", "<TLS>"})
        EXPECT_THAT(desk.tcp.Sent(), Not(HasSubstr(protectedOnly)));
}

TEST_F(JStreamEmailTest, WithTlsTheCodeOfTheLastLineIsTheReplys) {
    delivery.account.security = TransportSecurity::kImplicit;
    const std::size_t confirmation = 5;
    for (const char* refusal :
         {"554 rejected by mx250\r\n", "250-so far\r\n554 no\r\n", "250-\r\n", "250 cut off"}) {
        Answer(confirmation, refusal);
        desk.tcp.replies.resize(confirmation + 1);
        EXPECT_FALSE(Send()) << refusal;
    }
    Answer(3, "554-250\r\n554 see mx550\r\n");
    EXPECT_FALSE(Open());
    EXPECT_EQ(desk.boxes.shown.back().text, u"recipient error");
    Answer(confirmation, "250-all of\r\n250 it\r\n");
    desk.tcp.sends.clear();
    EXPECT_TRUE(Send());
    EXPECT_THAT(desk.tcp.Sent(), testing::StartsWith("<TLS>EHLO localdomain\r\nMAIL"));
}

TEST_F(JStreamEmailTest, WithTlsNothingIsToldToAServerThatDidNotAskForIt) {
    AskForLogIn();
    delivery.account.security = TransportSecurity::kImplicit;
    struct Case {
        std::string offers;
        std::deque<std::string> answers;
        std::string said;
        Text text = u"Wrong username\nor password.";
    };
    for (const Case& c : std::vector<Case>{
             {"PLAIN XOAUTH2", {}, "", u"Server offers no log-in\nthat is known here."},
             {"LOGIN", {"502 no\r\n"}, "AUTH LOGIN\r\n"},
             {"LOGIN", {"334 x\r\n", "535 no\r\n"}, "AUTH LOGIN\r\ndGlt\r\n"},
             {"CRAM-MD5", {"504 no\r\n"}, "AUTH CRAM-MD5\r\n"},
             {"CRAM-MD5 LOGIN", {"504 no\r\n", "454 no\r\n"}, "AUTH CRAM-MD5\r\nAUTH LOGIN\r\n"}}) {
        desk.tcp.replies = c.answers;
        desk.tcp.replies.push_front("250-x\r\n250 AUTH " + c.offers + "\r\n");
        desk.tcp.replies.push_front("220 x\r\n");
        desk.tcp.sends.clear();
        EXPECT_FALSE(Open());
        EXPECT_EQ(desk.boxes.shown.back().text, c.text);
        EXPECT_EQ(desk.tcp.Sent(), "<TLS>EHLO localdomain\r\n" + c.said + "quit\r\n");
    }
}

struct OutboxTest : JStreamEmailTest {
    OutboxTest() {
        delivery.viaOutbox = true;
        delivery.outboxFolder = desk.folder.Path(u"outbox");
    }
    std::vector<Text> Files() {
        std::vector<Text> names;
        EXPECT_EQ(desk.storage.ListFiles(delivery.outboxFolder, names), 0U);
        return names;
    }
};

TEST_F(OutboxTest, HoldsTheSameMessageAndReplacesNoOlderOne) {
    EXPECT_TRUE(Send());
    const Bytes file = test::ReadFileBytes(desk.folder.Path(u"outbox/talk.wav.eml"));
    EXPECT_EQ(std::string(file.begin(), file.end()), kMessage);
    EXPECT_EQ(desk.boxes.shown.at(0).icon, BoxIcon::kInformation);
    EXPECT_THAT(desk.tcp.lookUps, IsEmpty());

    message.attachmentName = u"../talk.wav";
    EXPECT_TRUE(Send());
    message.attachmentName = u"talk.wav";
    JStreamEMAIL other(desk.mail);  // at the same time
    EXPECT_TRUE(Open() && other.OpenMail(delivery, message));
    EXPECT_TRUE(mail.CloseMail() && other.CloseMail());
    ASSERT_TRUE(Open());
    mail.AbandonMail();
    EXPECT_THAT(Files(), ElementsAre(u"mail.._talk.wav.eml", u"talk.wav (2).eml",
                                     u"talk.wav (3).eml", u"talk.wav.eml"));
}

TEST_F(OutboxTest, AMailProgramGetsTheAttachmentAsAFile) {
    desk.outbox.isThere = true;
    message.body = "caf\xe9";
    EXPECT_TRUE(Send());
    EXPECT_THAT(Files(), ElementsAre(u"talk.wav", u"talk.wav.eml"));
    const OutboxLetter letter = desk.outbox.letters.at(0);
    EXPECT_EQ(letter.recipient + u" " + letter.subject, u"desk@x.org Talk");
    EXPECT_EQ(letter.body, u"caf\u00e9");
    EXPECT_EQ(test::ReadFileBytes(letter.attachmentPath), (Bytes{'f', 'o', 'o', 'b', 'a'}));

    desk.outbox.accepts = false;
    EXPECT_TRUE(Send());
    EXPECT_THAT(Files(), ElementsAre(u"talk.wav", u"talk.wav (2).eml", u"talk.wav.eml"));
    const Text second = desk.folder.Path(u"outbox/talk.wav (2).eml");
    EXPECT_EQ(desk.boxes.shown.at(1).text, u"The message lies in\n" + second);
    ASSERT_EQ(desk.posted.size(), 2U);
    EXPECT_TRUE(desk.posted[0].handedOver && !desk.posted[1].handedOver);
    EXPECT_EQ(desk.posted[1].path, second);
}

}  // namespace
}  // namespace orma
