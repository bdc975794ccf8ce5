#include "publish/dialogs/ftp_dialog.h"

namespace orma {

FtpDialog::FtpDialog(DialogServices services, const DialogResource& resource)
    : s_(services),
      resource_(resource),
      images_(services),
      servers_(FtpChoices(services.settings)),
      initial_{.server = servers_.selected, .keepNames = services.settings.KeepImageNames != 0} {}

void FtpDialog::Start(const FtpFields& fields) {
    if (resource_.Has(DialogRole::kKeepNames)) s_.settings.KeepImageNames = fields.keepNames;
    if (s_.settings.ServerChoice == 0 || !resource_.Has(DialogRole::kServer)) return;
    if (const auto entry = servers_.EntryAt(fields.server)) UseFtpEntry(s_.settings, *entry);
}

}  // namespace orma
