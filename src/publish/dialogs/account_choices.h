#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "settings/settings_record.h"

namespace orma {

/// One line of a "Server" box: a name and the table's entry behind it, none for a placeholder.
struct AccountChoice {
    Text name;
    std::optional<std::size_t> entry;
};

/// What a "Server" box shows.
struct AccountChoices {
    std::vector<AccountChoice> lines;
    std::optional<std::size_t> selected;  // a line
    Text text;                            // the name in use, also where no line bears it

    /// The first line with an account of that name.
    [[nodiscard]] std::optional<std::size_t> Find(TextView name) const;

    /// The table's entry behind a line that was selected; none for a placeholder or no line.
    [[nodiscard]] std::optional<std::size_t> EntryAt(std::optional<std::size_t> line) const;
};

/// The FTP destinations in table order, up to the first without a name and without those that have
/// no server. The one in use is selected, else the first.
[[nodiscard]] AccountChoices FtpChoices(const SettingsRecord& settings);

/// The mail accounts in table order, up to the first without a name; the server text is the name of
/// an account that has none of its own. Filled up with placeholders to as many lines as the table
/// has entries. The one in use is selected, else nothing.
[[nodiscard]] AccountChoices SmtpChoices(const SettingsRecord& settings);

/// Makes an entry of the table, below its size, the destination or account in use.
void UseFtpEntry(SettingsRecord& settings, std::size_t entry);
void UseSmtpEntry(SettingsRecord& settings, std::size_t entry);

}  // namespace orma
