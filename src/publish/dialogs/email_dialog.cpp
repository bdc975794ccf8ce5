#include "publish/dialogs/email_dialog.h"

#include <algorithm>
#include <cinttypes>

namespace orma {
namespace {

bool IsControl(char16_t unit) {
    return unit < u' ' || unit == 0x7F;
}

/// As much of a subject as a mail's head takes, on one line.
Text SubjectLine(const Text& text) {
    Text line = text.substr(0, EmailDialog::kMaxCharacters);
    std::replace_if(line.begin(), line.end(), IsControl, u' ');
    return line;
}

}  // namespace

bool IsMailAddress(TextView text) {
    const std::size_t at = text.find(u'@');
    return at != TextView::npos && text.find(u'.', at) != TextView::npos &&
           std::none_of(text.begin(), text.end(), IsControl);
}

bool RequireMailAddress(ErrorReporter& report, TextView text) {
    if (IsMailAddress(text)) return true;
    report.Boxes().Show({.text = u"Illegal email-address", .title = u"error"});
    return false;
}

EmailDialog::EmailDialog(DialogServices services, const DialogResource& resource,
                         const Text& baseName, std::uint64_t audioBytes)
    : s_(services),
      resource_(resource),
      audioBytes_(audioBytes),
      images_(services),
      recipients_(services.files, services.programFolder + u"emails.txt"),
      servers_(SmtpChoices(services.settings)),
      initial_{.recipient = recipients_.Entries().front(),
               .subject = baseName,
               .server = servers_.selected,
               .keepNames = services.settings.KeepImageNames != 0} {}

Text EmailDialog::InfoText() const {
    const std::uint64_t images = images_.Attached() ? images_.List().TotalBytes() : 0;
    return FormatText("Email-size will be : %" PRIu64 " KB", EmailKilobytes(audioBytes_ + images));
}

bool EmailDialog::Start(const EmailFields& fields) {
    if (s_.settings.PublishMethod == 0) return true;
    if (resource_.Has(DialogRole::kKeepNames)) s_.settings.KeepImageNames = fields.keepNames;
    if (resource_.Has(DialogRole::kServer)) {
        const auto entry = servers_.EntryAt(fields.server);
        if (entry) UseSmtpEntry(s_.settings, *entry);
    }
    const Text recipient = fields.recipient.substr(0, kMaxCharacters);
    if (!RequireMailAddress(s_.files.report, recipient)) return false;
    s_.choices.subject = SubjectLine(fields.subject);
    s_.choices.recipient = recipient;
    (void)recipients_.Store(recipient);
    return true;
}

}  // namespace orma
