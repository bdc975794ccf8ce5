#pragma once

#include "settings/settings_record.h"
#include "stream/ftp_account.h"
#include "stream/smtp_account.h"

namespace orma {

/// An entry of the table, below its size, as plain values.
[[nodiscard]] FtpAccount FtpAccountOf(const SettingsRecord& settings, std::size_t entry);
[[nodiscard]] SmtpAccount SmtpAccountOf(const SettingsRecord& settings, std::size_t entry);

/// The FTP destination in use. The settings in use do not say how the connection is protected: the
/// entry of the name in use does, or, where that one belongs to another server and asks for no
/// protection, the first entry of the same server. Without any there is none. Where no server is in
/// use, the entry of the name in use is the destination.
[[nodiscard]] FtpAccount CurrentFtpAccount(const SettingsRecord& settings);

/// The mail account in use: the entry of the name in use. Without one it is the settings in use,
/// with port and protection of the first entry of the same server. (Read from a file, the settings
/// in use are always those of account 0, which shares their place; only the name tells the choice.)
[[nodiscard]] SmtpAccount CurrentSmtpAccount(const SettingsRecord& settings);

}  // namespace orma
