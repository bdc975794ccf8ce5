#include "stream/jstream_email.h"

#include "stream/jstream_smtp.h"
#include "stream/outbox_message.h"

namespace orma {
JStreamEMAIL::JStreamEMAIL(const MailServices& services) : services_(services) {}

JStreamEMAIL::~JStreamEMAIL() = default;

bool JStreamEMAIL::OpenMail(const MailDelivery& delivery, const MailMessage& message) {
    AbandonMail();
    if (delivery.viaOutbox) {
        letter_ = std::make_unique<OutboxMessage>(services_, delivery.outboxFolder, message);
    } else {
        smtp_ = OpenDirect(delivery.account, message);
    }
    if (!IsTaking()) {
        AbandonMail();
        return false;
    }
    status = kGood | kOpen;
    return true;
}

std::unique_ptr<JStreamsmtp> JStreamEMAIL::OpenDirect(const SmtpAccount& account,
                                                      const MailMessage& message) {
    auto smtp = std::make_unique<JStreamsmtp>(services_);
    const SmtpOpenResult result = smtp->Open(account);
    if (result != SmtpOpenResult::kOk) {
        if (result != SmtpOpenResult::kGivenUp) ShowInfo(TextOf(result));
        return nullptr;
    }
    if (smtp->StartMessage(message) == 0 && smtp->IsWritable()) return smtp;
    smtp->Disconnect();
    return nullptr;
}

bool JStreamEMAIL::IsTaking() const {
    return (smtp_ && smtp_->IsWritable()) || (letter_ && letter_->IsGood());
}

void JStreamEMAIL::Write(const void* buffer, std::uint32_t count) {
    if (!Has(kGood | kOpen)) return;
    if (smtp_) smtp_->Write(buffer, count);
    if (letter_) letter_->Attach({static_cast<const std::uint8_t*>(buffer), count});
    if (!IsTaking()) status &= ~std::uint32_t{kGood};
}

void JStreamEMAIL::Read(void*, std::uint32_t) {}

bool JStreamEMAIL::CloseMail() {
    bool arrived = false;
    if (smtp_) {
        const bool wasWritable = smtp_->IsWritable();
        smtp_->EndMessage();
        arrived = wasWritable && smtp_->Has(kGood);
        if (wasWritable && !arrived && !smtp_->WasGivenUp())
            ShowInfo(u"Message not confirmed\nby the server.");
        smtp_->Disconnect();
        smtp_.reset();
    }
    if (letter_) {
        arrived = letter_->Commit();
        letter_.reset();
    }
    status = arrived ? std::uint32_t{kGood} : 0;
    return arrived;
}

void JStreamEMAIL::AbandonMail() {
    smtp_.reset();  // closes without a word: inside a message "quit" would be a line of it
    letter_.reset();
    status = 0;
}

void JStreamEMAIL::ShowInfo(const Text& text) {
    services_.files.report.Boxes().Show({.text = text, .title = u"Info"});
}

}  // namespace orma
