#pragma once

#include "publish/dialogs/email_dialog.h"
#include "publish/dialogs/ftp_dialog.h"

namespace orma {

/// Shows the publish dialogs: windows, or a front end without one that answers from its options.
/// UI thread; each call blocks until its dialog is closed.
class PublishDialogs {
  public:
    virtual ~PublishDialogs() = default;

    /// Shows an opened dialog. True (1) after its Start succeeded, false (0) for Cancel: the
    /// publication then ends, and nothing is sent.
    [[nodiscard]] virtual bool ShowEmailDialog(EmailDialog& dialog) = 0;
    [[nodiscard]] virtual bool ShowFtpDialog(FtpDialog& dialog) = 0;
};

}  // namespace orma
