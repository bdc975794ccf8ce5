#include "stream/jstream_smtp.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "base/trace.h"
#include "stream/smtp_reply.h"

namespace orma {
namespace {

constexpr std::size_t kReplyBytes = 512;         // what one read takes, with a zero at its end
constexpr std::size_t kLongestReply = 8 * 1024;  // of several lines, read whole
constexpr std::chrono::milliseconds kWholeReplyTime{JStreamSocket::kReadMilliseconds};

struct Refusal {
    int code;
    const char16_t* text;
    const char* trace;
};

// In the order in which they are looked for.
constexpr std::array<Refusal, 6> kRefusals = {{
    {550, u"recipient mailbox\nunavailable", "smtp: 550, recipient mailbox unavailable"},
    {551, u"user not local", "smtp: 551, user not local"},
    {552, u"recipient mailbox full", "smtp: 552, recipient mailbox full"},
    {553, u"recipient not allowed,\nrelaying denied",
     "smtp: 553, recipient not allowed, relaying denied"},
    {450, u"recipient unavailable\nor busy", "smtp: 450, recipient unavailable or busy"},
    {451, u"recipient not allowed, relaying denied",
     "smtp: 451, recipient not allowed, relaying denied"},
}};

/// True when a line of the text is a single dot, which ends a message wherever it stands
/// (RFC 5321, 4.1.1.4). Lines end as the most lenient server sees it.
bool HoldsEndOfMessage(std::string_view body) {
    const auto isBreak = [&](std::size_t at) {
        return at >= body.size() || body[at] == '\r' || body[at] == '\n';
    };
    for (std::size_t dot = body.find('.'); dot != std::string_view::npos;
         dot = body.find('.', dot + 1)) {
        if ((dot == 0 || isBreak(dot - 1)) && isBreak(dot + 1)) return true;
    }
    return false;
}

SmtpOpenResult ResultOf(TlsFailure failure) {
    switch (failure) {
        case TlsFailure::kNone:
            return SmtpOpenResult::kOk;
        case TlsFailure::kTrustStore:
            return SmtpOpenResult::kTrustStore;
        case TlsFailure::kWrongHost:
            return SmtpOpenResult::kWrongHost;
        case TlsFailure::kExpired:
            return SmtpOpenResult::kExpired;
        case TlsFailure::kUntrusted:
            return SmtpOpenResult::kUntrusted;
        case TlsFailure::kHandshake:
            return SmtpOpenResult::kHandshake;
        case TlsFailure::kGivenUp:
            return SmtpOpenResult::kGivenUp;
    }
    return SmtpOpenResult::kHandshake;
}

}  // namespace

JStreamsmtp::JStreamsmtp(const MailServices& services)
    : services_(services), socket_(services), mime_(socket_) {}

SmtpOpenResult JStreamsmtp::Open(const SmtpAccount& account) {
    Disconnect();
    const SmtpOpenResult result = Converse(account);
    if (result == SmtpOpenResult::kOk) return result;
    Disconnect();
    return socket_.WasGivenUp() ? SmtpOpenResult::kGivenUp : result;
}

SmtpOpenResult JStreamsmtp::Converse(const SmtpAccount& account) {
    const bool isPlain = account.security == TransportSecurity::kNone;
    wholeReplies_ = !isPlain;
    if (socket_.Connect(account.server, account.port) != 0) return SmtpOpenResult::kNotFound;
    if (account.security == TransportSecurity::kImplicit) {
        const TlsFailure failure = socket_.Secure(account.server, account.caFile);
        if (failure != TlsFailure::kNone) return ResultOf(failure);
    }
    if (!Expect("220")) return SmtpOpenResult::kSilent;
    if (!Greet(isPlain)) return SmtpOpenResult::kRefused;
    if (account.security == TransportSecurity::kUpgrade) {
        const SmtpOpenResult upgraded = Upgrade(account);
        if (upgraded != SmtpOpenResult::kOk) return upgraded;
        if (!Greet(isPlain)) return SmtpOpenResult::kRefused;
    }
    if (account.authenticate) {
        const SmtpOpenResult loggedIn = LogIn(account);
        if (loggedIn != SmtpOpenResult::kOk) {
            Trace("smtp: logging in ERROR");
            return loggedIn;
        }
        Trace("smtp: logging in OK");
    } else {
        Trace("smtp: server OK");
    }
    loggedIn_ = true;
    return SmtpOpenResult::kOk;
}

bool JStreamsmtp::Greet(bool isPlain) {
    SendLine(isPlain ? "HELO localdomain" : "EHLO localdomain");
    if (Expect("250")) return true;
    Trace("smtp: no response from server");
    return false;
}

SmtpOpenResult JStreamsmtp::Upgrade(const SmtpAccount& account) {
    if (!Offers("STARTTLS")) return SmtpOpenResult::kNoTls;
    SendLine("STARTTLS");
    ReadReply();
    if (!reply_.starts_with("220")) return SmtpOpenResult::kNoTls;
    // Whatever stands behind this reply was not protected, yet would be taken for an answer to what
    // is said under protection (RFC 3207, 6).
    if (EndOfReply(reply_) != reply_.size()) return SmtpOpenResult::kUnsafeUpgrade;
    return ResultOf(socket_.Secure(account.server, account.caFile));
}

bool JStreamsmtp::Offers(std::string_view keyword, std::string_view value) const {
    return OffersExtension(reply_, keyword, value);
}

SmtpOpenResult JStreamsmtp::LogIn(const SmtpAccount& account) {
    const std::string user = ToWindows1252(account.user);
    const std::string password = ToWindows1252(account.password);
    if (!wholeReplies_) return LogInUnasked(user, password);
    // Asked now, while the greeting is the last reply.
    const bool challenge = Offers("AUTH", "CRAM-MD5");
    const bool login = Offers("AUTH", "LOGIN");
    if (!challenge && !login) return SmtpOpenResult::kNoLogIn;
    return LogInAsOffered(user, password, challenge, login);
}

/// In clear text CRAM-MD5 is always tried first, and only a refusal of name or password, 535, leads
/// to LOGIN, where the prompts are not looked at.
SmtpOpenResult JStreamsmtp::LogInUnasked(const std::string& user, const std::string& password) {
    SendLine("AUTH CRAM-MD5");
    ReadReply();
    std::array<char, 64> word{};
    (void)std::sscanf(reply_.c_str(), "%*d %63s", word.data());
    if (!AnswerChallenge(word.data(), user, password)) return SmtpOpenResult::kNoDigest;
    ReadReply();
    if (ReplyHas("235")) return SmtpOpenResult::kOk;
    if (!ReplyHas("535")) return SmtpOpenResult::kLogInRefused;
    SendLine("AUTH LOGIN");
    (void)Expect("334");
    SendLine(Base64(user));
    (void)Expect("334");
    SendLine(Base64(password));
    return Expect("235") ? SmtpOpenResult::kOk : SmtpOpenResult::kLogInRefused;
}

/// Name and password go only to a server that asks for them.
SmtpOpenResult JStreamsmtp::LogInAsOffered(const std::string& user, const std::string& password,
                                           bool challenge, bool login) {
    constexpr SmtpOpenResult kRefused = SmtpOpenResult::kLogInRefused;
    if (challenge) {
        SendLine("AUTH CRAM-MD5");
        if (Expect("334")) {
            if (!AnswerChallenge(ChallengeOf(LastLine(reply_)), user, password))
                return SmtpOpenResult::kNoDigest;
            if (Expect("235")) return SmtpOpenResult::kOk;
            if (!ReplyHas("535")) return kRefused;
        }
        if (!socket_.Has(kGood)) return kRefused;
    }
    if (!login) return kRefused;
    SendLine("AUTH LOGIN");
    if (!Expect("334")) return kRefused;
    SendLine(Base64(user));
    if (!Expect("334")) return kRefused;
    SendLine(Base64(password));
    return Expect("235") ? SmtpOpenResult::kOk : kRefused;
}

bool JStreamsmtp::AnswerChallenge(const std::string& word, const std::string& user,
                                  const std::string& password) {
    Trace("greet: %s", Printable(word).c_str());
    const std::string challenge = FromBase64(word);
    std::array<std::uint8_t, 16> digest{};
    if (!services_.hash.HmacMd5(AsBytes(password), AsBytes(challenge), digest)) {
        Trace("smtp: no MD5 on this system");
        SendLine("*");
        ReadReply();
        return false;
    }
    std::string text;
    for (const std::uint8_t byte : digest)
        text += Format("%02x", byte);
    Trace("Allocated");
    Trace("username: %s", Printable(user).c_str());
    Trace("password: ***");
    Trace("challenge: %s", Printable(challenge).c_str());
    Trace("digest: ***");  // with the challenge it would let the password be guessed at leisure
    SendLine(Base64(user + " " + text));
    return true;
}

int JStreamsmtp::StartMessage(const MailMessage& message) {
    EndMessage();
    if (!loggedIn_) {
        Trace("smtp: not connected");
        return Fail();
    }
    if (HoldsEndOfMessage(message.body)) {
        ShowError(u"A line of the text is a single dot,\nwhich would end the mail.");
        return Fail();
    }
    SendLine("MAIL FROM: <" + HeaderText(message.sender) + ">");
    if (!Expect("250")) {
        Trace("smtp: mail from ERROR");
        ShowError(u"sender not accepted");
        return Fail();
    }
    Trace("smtp: mail from OK");
    SendLine("RCPT TO: <" + HeaderText(message.recipient) + ">");
    ReadReply();
    if (const int refused = RefusedRecipient(); refused != 0) return refused;
    SendLine("DATA");
    if (!Expect("354")) {
        Trace("smtp: data not ERROR");
        ShowError(u"message not accepted");
        return Fail();
    }
    Trace("smtp: data OK");
    mime_.Start(message);
    if (!socket_.Has(kGood)) {  // the link broke within the head: nobody else would tell
        Trace("smtp: head ERROR");
        ShowError(u"message not accepted");
        return Fail();
    }
    status |= kGood | kOpen;
    return 0;
}

int JStreamsmtp::RefusedRecipient() {
    if (ReplyHas("250")) {
        Trace("smtp: recipient OK");
        return 0;
    }
    for (const Refusal& refusal : kRefusals) {
        if (!ReplyHas(std::to_string(refusal.code))) continue;
        Trace("%s", refusal.trace);
        ShowError(refusal.text);
        return refusal.code;
    }
    Trace("smtp: recipient ERROR");
    ShowError(u"recipient error");
    return Fail();
}

void JStreamsmtp::Write(const void* buffer, std::uint32_t count) {
    Trace("Put %d", static_cast<int>(count));
    if (!IsWritable()) return;
    mime_.Attach({static_cast<const std::uint8_t*>(buffer), count});
    if (!socket_.Has(kGood)) (void)Fail();
}

void JStreamsmtp::Read(void*, std::uint32_t) {}

void JStreamsmtp::EndMessage() {
    if (!IsWritable()) return;
    mime_.Finish();
    Send("\r\n.\r\n");
    if (Expect("250") && socket_.Has(kGood)) {  // everything was sent, too
        Trace("smtp: message send OK");
    } else {
        Trace("smtp: message send ERROR");
        (void)Fail();
    }
    status &= ~std::uint32_t{kOpen};
}

void JStreamsmtp::Disconnect() {
    loggedIn_ = false;
    if (!socket_.IsOpen()) return;
    Trace("smtp: disconnect");
    SendLine("quit");
    ReadReply();
    socket_.Close();
}

int JStreamsmtp::Fail() {
    status &= ~std::uint32_t{kGood};
    return 1;
}

void JStreamsmtp::ShowError(const Text& text) {
    if (!socket_.WasGivenUp()) services_.files.report.Boxes().Show({.text = text});
}

void JStreamsmtp::Send(std::string_view text) {
    socket_.Write(text.data(), static_cast<std::uint32_t>(text.size()));
}

void JStreamsmtp::SendLine(const std::string& line) {
    Send(line + "\r\n");
}

void JStreamsmtp::ReadReply() {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + kWholeReplyTime;
    auto left = kWholeReplyTime;
    reply_.clear();
    do {
        std::array<char, kReplyBytes> piece{};
        socket_.ReadWithin(piece.data(), kReplyBytes - 1, static_cast<unsigned>(left.count()));
        reply_ += piece.data();
        left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    } while (wholeReplies_ && socket_.Has(kGood) && reply_.size() < kLongestReply &&
             EndOfReply(reply_) == std::string::npos && left.count() > 0);
}

bool JStreamsmtp::ReplyHas(std::string_view code) const {
    return wholeReplies_ ? LastLine(reply_).starts_with(code)
                         : reply_.find(code) != std::string::npos;
}

bool JStreamsmtp::Expect(std::string_view code) {
    ReadReply();
    return ReplyHas(code);
}

}  // namespace orma
