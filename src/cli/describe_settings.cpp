#include <array>
#include <stdexcept>

#include "cli/describe.h"
#include "settings/settings_store.h"

namespace orma::cli {

Json SettingValue(const Setting& setting) {
    const std::string text = setting.Get();
    if (setting.IsText()) return ToJson(FromUtf8(text));
    return Json::parse(text);
}

Json DescribeSettings(Application& app, const Text& path) {
    SettingsRecord record;
    const SettingsTable table(record);
    for (const SettingsFile kind : {SettingsFile::kConfiguration, SettingsFile::kUserState}) {
        const auto version = ReadSettingsFile(app.files, path, kind, record);
        if (!version) continue;
        const bool configuration = kind == SettingsFile::kConfiguration;
        Json fields = {{"kind", configuration ? "configuration" : "user state"},
                       {"version", *version}};
        for (const Setting& setting : table.In(kind)) {
            if (std::int64_t{*version} <= setting.threshold) break;  // the file ends before it
            const bool hidden = setting.secret && !setting.Get().empty();
            fields[setting.name] = hidden ? Json("(hidden)") : SettingValue(setting);
        }
        return fields;
    }
    throw std::runtime_error("cannot read the settings file " + ToUtf8(path));
}

}  // namespace orma::cli
