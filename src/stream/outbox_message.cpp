#include "stream/outbox_message.h"

#include <algorithm>

#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

/// A name that no file of the folder has: "name.ext", else "name (2).ext" and so on.
Text FreePath(Storage& storage, const Text& folder, const Text& name) {
    const PathParts parts = SplitPath(name);
    Text path = folder + name;
    for (int number = 2; storage.Exists(path); ++number)
        path = folder + parts.name + FormatText(" (%d)", number) + parts.extension;
    return path;
}

/// The attachment's name as a file of the outbox.
Text FileName(const Text& attachmentName) {
    Text name = attachmentName;
    std::ranges::replace_if(
        name, [](char16_t unit) { return unit < u' ' || unit == u'/' || unit == u'\\'; }, u'_');
    return name.empty() || name.front() == u'.' ? u"mail" + name : name;
}

}  // namespace

OutboxMessage::OutboxMessage(const MailServices& services, const Text& folder,
                             const MailMessage& message)
    : services_(services), message_(message) {
    Storage& storage = services.files.storage;
    if (const SystemError error = storage.CreateFolder(folder); error != 0) {
        services.files.report.ReportSystemFailure(u"CreateDirectory", error);
        return;
    }
    const Text name = FileName(message.attachmentName);
    messagePath_ = FreePath(storage, AsFolder(folder), name + u".eml");
    file_.emplace(services.files, messagePath_);
    if (services.outbox.HasMailProgram()) {
        attachmentPath_ = FreePath(storage, AsFolder(folder), name);
        attachment_.emplace(services.files, attachmentPath_);
    }
    mime_.emplace(file_->Stream());
    mime_->Start(message);
}

bool OutboxMessage::IsGood() {
    return file_ && file_->Stream().IsOpen() && (!attachment_ || attachment_->Stream().IsOpen());
}

void OutboxMessage::Attach(ByteSpan bytes) {
    if (!IsGood()) return;
    mime_->Attach(bytes);
    if (attachment_)
        attachment_->Stream().Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

bool OutboxMessage::Commit() {
    if (!IsGood()) return false;
    mime_->Finish();
    if (!file_->Commit()) return false;
    if (HandOver()) {
        (void)services_.files.storage.Delete(messagePath_);  // one too many harms nobody
        return true;
    }
    services_.files.report.Boxes().Show({.text = u"The message lies in\n" + messagePath_,
                                         .title = u"Info",
                                         .icon = BoxIcon::kInformation});
    return true;
}

bool OutboxMessage::HandOver() {
    if (!attachment_ || !attachment_->Commit()) return false;
    const OutboxLetter letter{message_.recipient, message_.subject, FromWindows1252(message_.body),
                              attachmentPath_};
    if (services_.outbox.HandOver(letter, services_.patience)) return true;
    Trace("outbox: no mail program took the message");
    (void)services_.files.storage.Delete(attachmentPath_);  // it is in the message
    return false;
}

}  // namespace orma
