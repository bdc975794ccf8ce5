#pragma once

#include <string>
#include <string_view>

#include "stream/jstream.h"
#include "stream/jstream_socket.h"
#include "stream/mime_message.h"
#include "stream/smtp_account.h"

namespace orma {

/// How a connection to a mail server came out. The first five numbers are fixed.
enum class SmtpOpenResult : int {
    kOk = 0,
    kRefused = 1,        // the greeting was refused
    kSilent = 2,         // the server said nothing of use
    kNotFound = 3,       // no connection
    kLogInRefused = 4,   // wrong name or password
    kNoTls = 5,          // TLS is demanded and the server does not offer it
    kUnsafeUpgrade = 6,  // clear text behind the reply to STARTTLS: somebody is in between
    kTrustStore = 7,     // 7 to 11: as TlsFailure
    kWrongHost = 8,
    kExpired = 9,
    kUntrusted = 10,
    kHandshake = 11,
    kGivenUp = 12,   // Patience was at its end
    kNoLogIn = 13,   // TLS, and the server lists no log-in that is known here
    kNoDigest = 14,  // this system refuses to compute the answer to CRAM-MD5
};

/// What the user is told of it.
[[nodiscard]] Text TextOf(SmtpOpenResult result);

/// A mail server and the SMTP dialogue with it (RFC 5321), and the attachment of the one message
/// under way. Writable (good and open) while a message takes its attachment. Each reply
/// is awaited for at most 10 s and is whatever one read yields; a code counts wherever it stands in
/// it. With TLS, where the wire is our own choice, replies are read whole, in 10 s altogether, and
/// the code of the last line is the reply's. UI thread, blocking.
class JStreamsmtp : public JStream {
  public:
    /// `services` outlive the stream.
    explicit JStreamsmtp(const MailServices& services);

    /// Connects and greets, protected and with log-in as the account says. Clear text: port,
    /// "HELO", and with log-in CRAM-MD5, then LOGIN when the server answers 535. TLS: "EHLO"; a
    /// mechanism that the server does not list is not tried, and LOGIN tells name and password only
    /// to a server that asks for them.
    [[nodiscard]] SmtpOpenResult Open(const SmtpAccount& account);

    /// Begins a message: envelope, header, text and the attachment's head. 0, 1 when that fails, or
    /// the code with which the server refused the recipient (550 to 553, 450, 451), which a box
    /// then shows.
    [[nodiscard]] int StartMessage(const MailMessage& message);

    /// The next bytes of the attachment.
    void Write(const void* buffer, std::uint32_t count) override;
    void Read(void* buffer, std::uint32_t count) override;

    /// Ends the message under way; clears `good` unless the server confirms it.
    void EndMessage();

    /// Says "quit" and closes.
    void Disconnect();

    /// True when Patience ended what was last tried.
    [[nodiscard]] bool WasGivenUp() const { return socket_.WasGivenUp(); }

    [[nodiscard]] bool IsWritable() const { return Has(kGood | kOpen); }

  private:
    [[nodiscard]] SmtpOpenResult Converse(const SmtpAccount& account);
    [[nodiscard]] bool Greet(bool isPlain);
    [[nodiscard]] SmtpOpenResult Upgrade(const SmtpAccount& account);
    [[nodiscard]] SmtpOpenResult LogIn(const SmtpAccount& account);
    [[nodiscard]] SmtpOpenResult LogInUnasked(const std::string& user, const std::string& password);
    [[nodiscard]] SmtpOpenResult LogInAsOffered(const std::string& user,
                                                const std::string& password, bool challenge,
                                                bool login);

    /// True when the server's greeting, the last reply, lists an extension, with a certain value.
    [[nodiscard]] bool Offers(std::string_view keyword, std::string_view value = {}) const;

    /// False where this system has no digest: the log-in is called off (RFC 4954, 4), and none that
    /// tells the password follows, for the server was not asked.
    [[nodiscard]] bool AnswerChallenge(const std::string& word, const std::string& user,
                                       const std::string& password);

    /// What the reply to the recipient means, as StartMessage returns it.
    [[nodiscard]] int RefusedRecipient();

    /// Clears `good` and returns 1.
    int Fail();
    void ShowError(const Text& text);
    void Send(std::string_view text);
    void SendLine(const std::string& line);
    void ReadReply();
    [[nodiscard]] bool ReplyHas(std::string_view code) const;

    /// Reads a reply; true when it has the code.
    [[nodiscard]] bool Expect(std::string_view code);

    const MailServices& services_;
    JStreamSocket socket_;
    MimeMessage mime_;
    std::string reply_;
    bool wholeReplies_ = false;
    bool loggedIn_ = false;
};

}  // namespace orma
