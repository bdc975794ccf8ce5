#pragma once

#include "platform/mail_outbox.h"
#include "platform/openssl/openssl_keyed_hash.h"
#include "stream/smtp_account.h"
#include "support/fake_tcp.h"
#include "support/test_files.h"

namespace orma::test {

/// A mail program that keeps what it is given.
class FakeOutbox : public MailOutbox {
  public:
    [[nodiscard]] bool HasMailProgram() override { return isThere; }
    [[nodiscard]] bool HandOver(const OutboxLetter& letter, Patience&) override {
        letters.push_back(letter);
        return accepts;
    }
    bool isThere = false;
    bool accepts = true;
    std::vector<OutboxLetter> letters;
};

/// All that mail needs, with a scripted server and a mail program of cardboard.
struct MailDesk : TestFiles {
    FakeTcp tcp;
    FakeTls tls{tcp};
    OpensslKeyedHash hash;
    FakeOutbox outbox;
    FakePatience patience;
    std::uint32_t bytesSent = 0;
    std::vector<PostedMessage> posted;
    MailServices mail{tcp, tls, hash, outbox, services, patience, bytesSent, &posted};
};

}  // namespace orma::test
