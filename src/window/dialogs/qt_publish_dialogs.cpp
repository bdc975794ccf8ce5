#include "window/dialogs/qt_publish_dialogs.h"

#include <QApplication>

#include "window/dialogs/publish_dialog_window.h"

namespace orma {

bool QtPublishDialogs::ShowEmailDialog(EmailDialog& dialog) {
    return PublishDialogWindow(dialog, QApplication::activeWindow()).exec() == QDialog::Accepted;
}

bool QtPublishDialogs::ShowFtpDialog(FtpDialog& dialog) {
    return PublishDialogWindow(dialog, QApplication::activeWindow()).exec() == QDialog::Accepted;
}

}  // namespace orma
