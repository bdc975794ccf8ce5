#pragma once

#include <string>

#include "stream/base64_encoder.h"
#include "stream/jstream.h"
#include "stream/smtp_account.h"

namespace orma {

/// Composes a message of a text and one attachment (MIME, RFC 2046) on a stream: the same bytes for
/// a server as for a file. Its boundary is always "JStreamSmtp". Whoever uses it looks at the
/// stream's status.
class MimeMessage {
  public:
    /// `sink` outlives the message.
    explicit MimeMessage(JStream& sink) : sink_(sink) {}

    /// Header, the text's part, and the head of the attachment.
    void Start(const MailMessage& message);

    /// The next bytes of the attachment.
    void Attach(ByteSpan bytes);

    /// The rest of the attachment, an empty last part and the closing boundary.
    void Finish();

  private:
    void Put(std::string_view text);
    void PutLine(const std::string& text);

    JStream& sink_;
    Base64Encoder encoder_;
};

/// A text for one header line or command: 8-bit, each control character a blank.
[[nodiscard]] std::string HeaderText(const Text& text);

}  // namespace orma
