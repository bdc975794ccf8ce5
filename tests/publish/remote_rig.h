#pragma once

#include "publish_rig.h"
#include "support/fake_ftp.h"
#include "support/mail_desk.h"

namespace orma::test {

/// A mail server without CRAM-MD5 needs none.
struct NoHash : KeyedHash {
    [[nodiscard]] bool HmacMd5(ByteSpan, ByteSpan, std::array<std::uint8_t, 16>&) override {
        return false;
    }
};

/// The rig with an FTP server and a mail server. Images are off, the FTP destination is "srv".
struct RemoteRig : PublishRig {
    RemoteRig();

    /// Two clips, one of them whole with a cut and sound behind its last period.
    void AddClips(bool mp2, std::uint32_t rate, unsigned channels);

    /// The mail server takes `messages` of them.
    void ExpectMails(int messages);

    /// The attachments that it got, decoded.
    [[nodiscard]] std::vector<Bytes> Attachments() const;

    /// What the verifier finds wrong with these bytes, one line each.
    [[nodiscard]] std::string Findings(const Bytes& published);

    FakeFtp server;
    FakeTcp tcp;
    FakeTls tls{tcp};
    NoHash hash;
    FakeOutbox outbox;
    std::uint32_t mailBytes = 0;
    FtpServices ftp{server, files.report, patience};
    MailServices mail{tcp, tls, hash, outbox, files.services, patience, mailBytes};
};

}  // namespace orma::test
