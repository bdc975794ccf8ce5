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
/// protection, the entry of the same host (port and case apart), a protected one first. Without any
/// there is none. Where no server is in use, the entry of the name in use is the destination.
[[nodiscard]] FtpAccount CurrentFtpAccount(const SettingsRecord& settings);

/// The mail account in use: the entry of the name in use; of several with that name, which entries
/// without one share with others of their server, the one that has server, user, log-in and
/// password in use. Without any it is the settings in use, with port and protection of the entry of
/// the same host, a protected one first. (Read from a file, the settings in use are always those of
/// account 0, which shares their place; only the name tells the choice.)
[[nodiscard]] SmtpAccount CurrentSmtpAccount(const SettingsRecord& settings);

}  // namespace orma
