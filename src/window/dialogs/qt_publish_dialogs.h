#pragma once

#include "publish/dialogs/publish_dialogs.h"

namespace orma {

/// The publish dialogs as windows over the active one.
class QtPublishDialogs : public PublishDialogs {
  public:
    [[nodiscard]] bool ShowEmailDialog(EmailDialog& dialog) override;
    [[nodiscard]] bool ShowFtpDialog(FtpDialog& dialog) override;
};

}  // namespace orma
