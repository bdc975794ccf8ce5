#include "settings/settings_json.h"

#include <map>

#include <nlohmann/json.hpp>

namespace orma {

SettingsImport ImportSettings(std::istream& json, const SettingsTable& table) {
    // Sorted: an object that keeps its order searches it through for every key.
    const nlohmann::json settings = nlohmann::json::parse(json, nullptr, false);
    if (!settings.is_object()) return {.names = {}, .refusal = "not a JSON object"};
    std::map<std::string_view, const Setting*> byName;
    for (const Setting& setting : table.All())
        byName.emplace(setting.name, &setting);
    SettingsImport import;
    for (const auto& [name, value] : settings.items()) {
        const auto found = byName.find(name);
        if (found == byName.end()) {
            import.refusal = "no setting is named " + name;
        } else if (value.is_structured()) {
            // Writing a list out again would nest as deep as the file does.
            import.refusal = name + " takes one value, not a list of them";
        } else {
            import.refusal =
                found->second->Set(value.is_string() ? value.get<std::string>() : value.dump());
        }
        if (!import.refusal.empty()) break;
        import.names.insert(name);
    }
    return import;
}

std::string ExportSettings(const SettingsTable& table, bool secrets) {
    using Json = nlohmann::ordered_json;
    Json settings = Json::object();
    for (const Setting& setting : table.All()) {
        if (setting.secret && !secrets) continue;
        const std::string text = setting.Get();
        settings[setting.name] = setting.IsText() ? Json(text) : Json::parse(text);
    }
    return settings.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace orma
