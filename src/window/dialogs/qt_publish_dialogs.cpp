#include "window/dialogs/qt_publish_dialogs.h"

#include <QApplication>

#include "window/dialogs/publish_dialog_window.h"

namespace orma {

bool QtPublishDialogs::ShowEmailDialog(EmailDialog& dialog) {
    PublishDialogWindow window(
        {.resource = dialog.Resource(),
         .images = dialog.Images(),
         .servers = dialog.Servers(),
         .recipients = dialog.Recipients(),
         .initial = dialog.Initial(),
         .info = [&dialog] { return dialog.InfoText(); },
         .start = [&dialog](const EmailFields& fields) { return dialog.Start(fields); }},
        QApplication::activeWindow());
    return window.exec() == QDialog::Accepted;
}

bool QtPublishDialogs::ShowFtpDialog(FtpDialog& dialog) {
    const auto start = [&dialog](const EmailFields& fields) {
        dialog.Start({.server = fields.server, .keepNames = fields.keepNames});
        return true;
    };
    const FtpFields& initial = dialog.Initial();
    PublishDialogWindow window(
        {.resource = dialog.Resource(),
         .images = dialog.Images(),
         .servers = dialog.Servers(),
         .recipients = {},
         .initial = {.server = initial.server, .keepNames = initial.keepNames},
         .info = {},
         .start = start},
        QApplication::activeWindow());
    return window.exec() == QDialog::Accepted;
}

}  // namespace orma
