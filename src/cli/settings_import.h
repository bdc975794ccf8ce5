#pragma once

#include <istream>
#include <set>
#include <string>

#include "settings/settings_table.h"

namespace orma::cli {

/// Sets the options that a JSON object names: {"StartMode": 2, "Ftp[0].Server": "..."}. Returns
/// their names. Throws std::runtime_error with the reason at the first name that is none or value
/// that an option refuses; those before it are set then, and the caller saves nothing. Works on any
/// bytes in time and memory in keeping with their number.
[[nodiscard]] std::set<std::string> ImportSettings(std::istream& json, const SettingsTable& table);

}  // namespace orma::cli
