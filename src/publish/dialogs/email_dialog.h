#pragma once

#include <cstdint>

#include "publish/dialogs/account_choices.h"
#include "publish/dialogs/dialog_images.h"
#include "publish/dialogs/dialog_resources.h"
#include "publish/dialogs/recent_recipients.h"

namespace orma {

/// Size in KB of a mail with `bytes` of sound and images: base64 makes four characters of three
/// bytes, and two more for the line end after every 76.
[[nodiscard]] constexpr std::uint64_t EmailKilobytes(std::uint64_t bytes) {
    return (bytes * 4 / 3 + bytes / 38) >> 10;
}

/// True when mail can be addressed so: an "@", behind it a ".", and no control character, which
/// would end the address's line in the mail's head.
[[nodiscard]] bool IsMailAddress(TextView text);

/// The same; where it cannot, a box says so.
[[nodiscard]] bool RequireMailAddress(ErrorReporter& report, TextView text);

/// What the user fills into an e-mail dialog. Values of controls that it lacks are ignored.
struct EmailFields {
    Text recipient{};
    Text subject{};
    std::optional<std::size_t> server{};  // line of the "Server" box
    bool keepNames = false;
};

/// An e-mail dialog without its window: what the controls show, and what Start makes of them. UI
/// thread.
class EmailDialog {
  public:
    static constexpr std::size_t kMaxCharacters = 253;  // of recipient and subject each

    /// Opens the e-mail dialog `resource` (105, 107, 109, 111, 119 or 121, or a twin) for a
    /// publication called `baseName` with `audioBytes` of sound; images alone have 0.
    EmailDialog(DialogServices services, const DialogResource& resource, const Text& baseName,
                std::uint64_t audioBytes);

    [[nodiscard]] const DialogResource& Resource() const { return resource_; }

    /// What the fields show at first.
    [[nodiscard]] const EmailFields& Initial() const { return initial_; }
    [[nodiscard]] const std::array<Text, RecentRecipients::kCount>& Recipients() const {
        return recipients_.Entries();
    }
    [[nodiscard]] const AccountChoices& Servers() const { return servers_; }
    [[nodiscard]] DialogImages& Images() { return images_; }

    /// The info line with the size estimate; to be shown anew after every change of the images.
    [[nodiscard]] Text InfoText() const;

    /// "Start": true closes the dialog with 1, and the choices are made. False keeps it open: the
    /// recipient is no mail address (a box says so); account and "Keep names" are in use by then.
    /// Recipient and subject are cut, not refused, when too long. While the publish method is FTP
    /// nothing is taken over. A list of recent recipients that cannot be written (reported) does
    /// not hold up the mail.
    [[nodiscard]] bool Start(const EmailFields& fields);

  private:
    DialogServices s_;
    const DialogResource& resource_;
    std::uint64_t audioBytes_;
    DialogImages images_;
    RecentRecipients recipients_;
    AccountChoices servers_;
    EmailFields initial_;
};

}  // namespace orma
