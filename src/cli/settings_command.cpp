#include <fstream>
#include <iostream>
#include <set>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/describe.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "platform/posix/console.h"
#include "settings/settings_json.h"

namespace orma::cli {
namespace {

struct SettingsOptions {
    bool secrets = false;
    bool meanings = false;
    std::string name;
    std::vector<std::string> assignments;
    std::string file;
};

/// The settings of the program folder, for one command.
class Store {
  public:
    explicit Store(const Globals& globals)
        : environment_(globals), table_(environment_.App().settings) {
        // Accounts hold passwords: what is written here is for its owner alone.
        CreateFilesForOwnerOnly();
        // Missing files are no failure: the options then have their defaults.
        (void)App().settingsStore.LoadUserState();
        (void)App().settingsStore.LoadConfiguration();
    }

    [[nodiscard]] const SettingsTable& Table() const { return table_; }

    [[nodiscard]] const Setting& Named(const std::string& name) const {
        const Setting* setting = table_.Find(name);
        if (setting == nullptr) throw UsageError("no setting is named " + name);
        return *setting;
    }

    /// Saves the files that hold the named options.
    [[nodiscard]] bool Save(const std::set<std::string>& names) {
        const auto touches = [&](SettingsFile file) {
            for (const Setting& setting : table_.In(file))
                if (names.contains(setting.name)) return true;
            return false;
        };
        const bool configuration = touches(SettingsFile::kConfiguration);
        const bool userState = touches(SettingsFile::kUserState);
        if (configuration && !App().settingsStore.SaveConfiguration()) return false;
        return !userState || App().settingsStore.SaveUserState();
    }

  private:
    [[nodiscard]] Application& App() { return environment_.App(); }

    Environment environment_;
    SettingsTable table_;
};

int List(const Globals& globals, const SettingsOptions& options) {
    const Store store(globals);
    Json list = Json::object();
    for (const Setting& setting : store.Table().All()) {
        if (list.contains(setting.name)) continue;  // stands in both files
        const bool masked = setting.secret && !options.secrets;
        Json value = masked ? Json(setting.Get().empty() ? "" : "(hidden)") : SettingValue(setting);
        if (options.meanings)
            value = Json{{"value", value}, {"kind", setting.Kind()}, {"meaning", setting.meaning}};
        list[setting.name] = std::move(value);
    }
    Print(list, globals.json);
    return kOk;
}

int Get(const Globals& globals, const SettingsOptions& options) {
    const Store store(globals);
    const Setting& setting = store.Named(options.name);
    if (setting.secret && !options.secrets)
        throw UsageError(setting.name + " is a password; --secrets shows it");
    if (globals.json)
        Print({{setting.name, SettingValue(setting)}}, true);
    else
        std::printf("%s\n", setting.Get().c_str());
    return kOk;
}

int SaveAndTell(Store& store, const std::set<std::string>& names, const Globals& globals) {
    if (!store.Save(names)) return kFailed;
    if (globals.json) Print({{"saved", names}}, true);
    return kOk;
}

int Set(const Globals& globals, const SettingsOptions& options) {
    Store store(globals);
    std::set<std::string> names;
    for (const std::string& assignment : options.assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos) throw UsageError("expected NAME=VALUE: " + assignment);
        const Setting& setting = store.Named(assignment.substr(0, equals));
        std::string value = assignment.substr(equals + 1);
        // "-" keeps a password out of the process list and the shell's history.
        if (value == "-" && !std::getline(std::cin, value))
            throw UsageError("standard input holds no value for " + setting.name);
        if (const std::string refusal = setting.Set(value); !refusal.empty())
            throw UsageError(refusal);
        names.insert(setting.name);
    }
    return SaveAndTell(store, names, globals);
}

int Export(const Globals& globals, const SettingsOptions& options) {
    const std::string path = options.file.empty() ? "" : ToUtf8(CallerPath(options.file));
    const Store store(globals);
    const std::string settings = ExportSettings(store.Table(), options.secrets);
    if (path.empty()) {
        std::printf("%s\n", settings.c_str());
        return kOk;
    }
    std::ofstream file(path);
    file << settings << '\n';
    file.close();
    if (!file) throw std::runtime_error("cannot write " + options.file);
    return kOk;
}

int Import(const Globals& globals, const SettingsOptions& options) {
    std::ifstream file(options.file);
    if (!file) throw std::runtime_error("cannot read " + options.file);
    Store store(globals);
    // Nothing is saved before every value was accepted.
    const SettingsImport import = ImportSettings(file, store.Table());
    if (!import.refusal.empty()) throw std::runtime_error(import.refusal);
    return SaveAndTell(store, import.names, globals);
}

}  // namespace

void AddSettingsCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<SettingsOptions>();
    CLI::App* command = app.add_subcommand("settings", "Read and write the settings");
    command->require_subcommand(1);
    const auto add = [&](const std::string& name, const std::string& help,
                         int (*run)(const Globals&, const SettingsOptions&)) {
        CLI::App* sub = command->add_subcommand(name, help);
        sub->callback([&globals, &action, options, run] {
            action = [&globals, options, run] { return run(globals, *options); };
        });
        return sub;
    };
    const auto addSecrets = [&](CLI::App* sub) {
        sub->add_flag("--secrets", options->secrets, "Passwords too");
    };

    CLI::App* list = add("list", "List every setting with its value", List);
    addSecrets(list);
    list->add_flag("--meanings", options->meanings, "What each setting is for");
    CLI::App* get = add("get", "Print one setting", Get);
    addSecrets(get);
    get->add_option("NAME", options->name, "The setting")->required();
    CLI::App* set = add("set", "Change settings; NAME=- reads a value from standard input", Set);
    set->add_option("NAME=VALUE", options->assignments, "What to change")->required();
    CLI::App* out = add("export", "Write all settings as JSON", Export);
    addSecrets(out);
    out->add_option("FILE", options->file, "Where to; standard output when missing");
    CLI::App* in = add("import", "Take settings from a JSON file", Import);
    in->add_option("FILE", options->file, "The file")->required();
}

}  // namespace orma::cli
