#pragma once

#include <string>
#include <vector>

#include "settings/settings_record.h"

namespace orma {

/// A setting that cannot be saved as it is.
struct SettingsFault {
    std::string setting;  // its name
    std::string text;     // what is wrong, and what is right
};

/// Looks for what a reporter would stumble over later, at the earliest beside the microphone.
/// Folders and files are looked at, nothing is written. In no particular order.
[[nodiscard]] std::vector<SettingsFault> CheckSettings(const SettingsRecord& settings);

}  // namespace orma
