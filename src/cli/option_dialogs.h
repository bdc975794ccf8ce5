#pragma once

#include <string>
#include <vector>

#include "publish/dialogs/publish_dialogs.h"

namespace CLI {
class App;
}

namespace orma::cli {

/// What the publish dialogs would ask, as options of a command.
struct DialogOptions {
    std::string account;
    std::string recipient;
    std::string subject;
    std::vector<std::string> images;  // as the caller typed them
    bool keepNames = false;
};

/// Adds --account, --recipient, --subject, --image and --keep-names to a command.
void AddDialogOptions(CLI::App& command, DialogOptions& options);

/// Brings the account of --account into use, the one that the dialogs then find selected: a mail
/// account when the publish method is an e-mail one, else an FTP destination. Throws when no such
/// account is offered.
void UseAccount(const DialogOptions& options, SettingsRecord& settings);

/// Answers the publish dialogs from options, in place of windows; the account stays the one in
/// use, and without a recipient the mail dialog refuses. What the dialog refuses goes to
/// its boxes and counts as Cancel.
class OptionDialogs : public PublishDialogs {
  public:
    /// Made while the caller's folder is the current one. `settings` outlives it; its recipient
    /// stands in for --recipient.
    OptionDialogs(const DialogOptions& options, const SettingsRecord& settings);

    [[nodiscard]] bool ShowEmailDialog(EmailDialog& dialog) override;
    [[nodiscard]] bool ShowFtpDialog(FtpDialog& dialog) override;

  private:
    [[nodiscard]] bool AddImages(DialogImages& images);

    DialogOptions options_;
    const SettingsRecord& settings_;
    std::vector<Text> images_;
};

}  // namespace orma::cli
