#pragma once

#include <memory>

#include "stream/jstream.h"
#include "stream/smtp_account.h"

namespace orma {

class JStreamsmtp;
class OutboxMessage;

/// The byte sink of writers whose file becomes the attachment of a mail, sent directly or through
/// the outbox. `good` and `open` while a message takes bytes. Positions and reading do nothing. UI
/// thread, blocking.
class JStreamEMAIL : public JStream {
  public:
    /// `services` outlive the stream.
    explicit JStreamEMAIL(const MailServices& services);
    ~JStreamEMAIL() override;
    JStreamEMAIL(const JStreamEMAIL&) = delete;
    JStreamEMAIL& operator=(const JStreamEMAIL&) = delete;

    /// Begins a message, after which the attachment is written. An open one is abandoned. What went
    /// wrong with the server is shown in a box titled "Info", a refused recipient in one titled
    /// "Error"; nothing is shown when Patience ended it. True when good and open.
    [[nodiscard]] bool OpenMail(const MailDelivery& delivery, const MailMessage& message);

    /// The next bytes of the attachment; nothing happens unless good and open.
    void Write(const void* buffer, std::uint32_t count) override;
    void Read(void* buffer, std::uint32_t count) override;

    /// Ends the message and the connection. True only when the server confirmed the message, or
    /// when it lies whole in the outbox; a box then says where, if no mail program took it.
    /// Asks Patience: whoever lets a cancelled publication end properly must let it go on.
    [[nodiscard]] bool CloseMail();

    /// Drops an unfinished message: the server gets no end of it and so delivers nothing; nothing
    /// stays in the outbox.
    void AbandonMail();

  private:
    [[nodiscard]] std::unique_ptr<JStreamsmtp> OpenDirect(const SmtpAccount& account,
                                                          const MailMessage& message);

    /// True while server or outbox take the attachment.
    [[nodiscard]] bool IsTaking() const;
    void ShowInfo(const Text& text);

    const MailServices& services_;
    std::unique_ptr<JStreamsmtp> smtp_;
    std::unique_ptr<OutboxMessage> letter_;
};

}  // namespace orma
