#include "stream/outbox_message.h"

#include <algorithm>

#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

/// A name that no file of the folder has, also none under way: "name.ext", else "name (2).ext" and
/// so on.
Text FreePath(Storage& storage, const Text& folder, const Text& name) {
    const PathParts parts = SplitPath(name);
    Text path = folder + name;
    for (int number = 2; storage.Exists(path) || storage.Exists(path + u".tmp"); ++number)
        path = folder + parts.name + FormatText(" (%d)", number) + parts.extension;
    return path;
}

/// Begins a file of a name that is free. Another process may have thought so too: who has the
/// temporary file in turn looks again, for the other one may be done.
Text OpenNew(FileServices services, const Text& folder, const Text& name,
             std::optional<FileReplacement>& file) {
    Text path;
    do {
        path = FreePath(services.storage, folder, name);
        file.emplace(services, path);
    } while (file->Stream().IsOpen() && services.storage.Exists(path));
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
    messagePath_ = OpenNew(services.files, AsFolder(folder), name + u".eml", file_);
    if (services.outbox.HasMailProgram())
        attachmentPath_ = OpenNew(services.files, AsFolder(folder), name, attachment_);
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
    // A mail program may drop the attachment, and its user the window: the message stays.
    const bool handedOver = HandOver();
    if (services_.posted != nullptr) services_.posted->push_back({messagePath_, handedOver});
    const Text text =
        handedOver ? u"Handed to the mail program.\nShould the attachment be missing there,\n"
                     u"the message lies in\n"
                   : u"The message lies in\n";
    services_.files.report.Boxes().Show(
        {.text = text + messagePath_, .title = u"Info", .icon = BoxIcon::kInformation});
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
