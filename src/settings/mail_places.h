#pragma once

#include <array>

#include "settings/settings_record.h"

namespace orma {

// Server and log-in of mail accounts 0 and 1 also have places of their own in the configuration,
// beside the table; those of account 0 are at the same time those of the account in use.

/// What the two places hold; names, ports and protection are in the table alone.
[[nodiscard]] std::array<SmtpDestination, 2> MailPlaces(const SettingsRecord& settings);

/// Brings both places up to date with the table.
void StoreMailPlaces(SettingsRecord& settings);

/// Makes server and log-in of an account those in use.
void UseMailAccess(SettingsRecord& settings, const SmtpDestination& account);

/// Server and log-in from one account to another.
void CopyMailAccess(const SmtpDestination& from, SmtpDestination& to);

[[nodiscard]] bool SameMailAccess(const SmtpDestination& a, const SmtpDestination& b);

}  // namespace orma
