#pragma once

#include <istream>
#include <set>
#include <string>

#include "settings/settings_table.h"

namespace orma {

/// What an import did: the options that it set, or why it was refused.
struct SettingsImport {
    std::set<std::string> names;
    std::string refusal;  // empty: every value was accepted
};

/// Sets the options that a JSON object names: {"StartMode": 2, "Ftp[0].Server": "..."}. The first
/// name that is none or value that an option refuses ends it; those before it are set then, and the
/// caller saves nothing. Works on any bytes in time and memory in keeping with their number.
[[nodiscard]] SettingsImport ImportSettings(std::istream& json, const SettingsTable& table);

/// Every option as such an object, in the table's order, without a line's end behind it; passwords
/// only when asked for. Texts that are no valid Unicode have replacement characters.
[[nodiscard]] std::string ExportSettings(const SettingsTable& table, bool secrets);

}  // namespace orma
