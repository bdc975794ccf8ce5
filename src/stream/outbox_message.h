#pragma once

#include <optional>

#include "stream/file_replacement.h"
#include "stream/mime_message.h"
#include "stream/smtp_account.h"

namespace orma {

/// A message on its way to the user's mail program: the same bytes as one sent directly lie in an
/// ".eml" file of the outbox folder. Mail programs take texts and files, not messages; for them the
/// attachment lies there as a file too. No older file of the outbox is replaced: it may still be
/// unsent. Destroyed before Commit, it leaves nothing behind. UI thread.
class OutboxMessage {
  public:
    /// Begins the files; IsGood tells whether that went well (failures are reported).
    OutboxMessage(const MailServices& services, const Text& folder, const MailMessage& message);

    /// The next bytes of the attachment.
    void Attach(ByteSpan bytes);

    /// Completes the message and hands it over. The message stays, and a box says where; the
    /// attachment's file stays when the mail program took it. False when the message is not whole
    /// on the medium (reported).
    [[nodiscard]] bool Commit();

    [[nodiscard]] bool IsGood();

  private:
    [[nodiscard]] bool HandOver();

    const MailServices& services_;
    MailMessage message_;
    Text messagePath_;
    Text attachmentPath_;  // empty: nobody to hand it to
    std::optional<FileReplacement> file_;
    std::optional<FileReplacement> attachment_;
    std::optional<MimeMessage> mime_;
};

}  // namespace orma
