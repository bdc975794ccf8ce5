#pragma once

#include "publish/dialogs/account_choices.h"
#include "publish/dialogs/dialog_images.h"
#include "publish/dialogs/dialog_resources.h"

namespace orma {

/// What the user fills into an FTP dialog. Values of controls that it lacks are ignored.
struct FtpFields {
    std::optional<std::size_t> server{};  // line of the "Server" box
    bool keepNames = false;
};

/// An FTP dialog without its window: what the controls show, and what Start makes of them. UI
/// thread.
class FtpDialog {
  public:
    /// Opens the FTP dialog `resource`: 113, 115, 117, 123 or 125, or a twin.
    FtpDialog(DialogServices services, const DialogResource& resource);

    [[nodiscard]] const DialogResource& Resource() const { return resource_; }

    /// What the fields show at first.
    [[nodiscard]] const FtpFields& Initial() const { return initial_; }
    [[nodiscard]] const AccountChoices& Servers() const { return servers_; }
    [[nodiscard]] DialogImages& Images() { return images_; }

    /// "Start", which closes the dialog with 1: with the server-choice option the chosen entry
    /// comes into use.
    void Start(const FtpFields& fields);

  private:
    DialogServices s_;
    const DialogResource& resource_;
    DialogImages images_;
    AccountChoices servers_;
    FtpFields initial_;
};

}  // namespace orma
