#include "cli/settings_import.h"

#include <map>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace orma::cli {

std::set<std::string> ImportSettings(std::istream& json, const SettingsTable& table) {
    // Sorted: an object that keeps its order searches it through for every key.
    const nlohmann::json settings = nlohmann::json::parse(json, nullptr, false);
    if (!settings.is_object()) throw std::runtime_error("not a JSON object");
    std::map<std::string_view, const Setting*> byName;
    for (const Setting& setting : table.All())
        byName.emplace(setting.name, &setting);
    std::set<std::string> names;
    for (const auto& [name, value] : settings.items()) {
        const auto found = byName.find(name);
        if (found == byName.end()) throw std::runtime_error("no setting is named " + name);
        // Writing a list out again would nest as deep as the file does.
        if (value.is_structured())
            throw std::runtime_error(name + " takes one value, not a list of them");
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        if (const std::string refusal = found->second->Set(text); !refusal.empty())
            throw std::runtime_error(refusal);
        names.insert(name);
    }
    return names;
}

}  // namespace orma::cli
