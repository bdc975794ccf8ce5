// What a mail server answers: greeting, extensions, challenge, refusals. The first byte chooses
// protection and log-in; a zero byte ends what one read yields.

#include <algorithm>

#include "fuzz/fuzz.h"
#include "stream/jstream_email.h"
#include "support/mail_desk.h"

namespace orma::test {

// The dialogue with its boxes and a reply of several lines, however much the server sends.
const MemoryBudget kMemoryBudget{.fixedBytes = 96 * 1024, .bytesPerInputByte = 64};

void TryInput(ByteSpan input) {
    if (input.empty()) return;
    FuzzFiles files(input.size());
    FakeTcp tcp;
    FakeTls tls(tcp);
    OpensslKeyedHash hash;
    FakeOutbox outbox;
    FakePatience patience;
    std::uint32_t bytesSent = 0;
    const MailServices services{tcp, tls, hash, outbox, files.services, patience, bytesSent};
    const auto security = static_cast<TransportSecurity>(input[0] % 3);
    for (std::size_t at = 1; at < input.size();) {
        const auto rest = input.subspan(at);
        const auto end = std::find(rest.begin(), rest.end(), 0);
        tcp.replies.emplace_back(rest.begin(), end);
        at += tcp.replies.back().size() + 1;
    }

    MailDelivery delivery;
    delivery.account = {.server = u"mail.x.org",
                        .security = security,
                        .authenticate = input[0] >= 128,
                        .user = u"tim",
                        .password = u"tanstaaftanstaaf"};
    JStreamEMAIL mail(services);
    bool arrived = false;
    if (mail.OpenMail(delivery, {u"desk@x.org", u"Talk", u"me@x.org", "Body", u"talk.wav"})) {
        mail.Write("sound", 5);
        arrived = mail.CloseMail();
    }
    const std::string sent = tcp.Sent();
    // The last two sends are the dot and "quit"; the server's word for the message came in between.
    const std::string word = arrived ? tcp.heard[tcp.sends.size() - 1] : "";
    Require(
        !arrived || (tcp.sends.size() > 1 && tcp.sends[tcp.sends.size() - 2] == "\r\n.\r\n" &&
                     (security == TransportSecurity::kNone
                          ? word.find("250") != std::string::npos
                          : word.starts_with("250") || word.find("\n250") != std::string::npos) &&
                     sent.ends_with("quit\r\n")),
        "nothing arrives without the server's word");
    for (const char* command : {"MAIL", "AUTH"})
        Require(security == TransportSecurity::kNone || sent.find(command) == std::string::npos ||
                    sent.find("<TLS>") < sent.find(command),
                "no mail and no log-in in clear text");
    Require(!tcp.isOpen, "no connection stays open");
}

}  // namespace orma::test
