#include "cli/sheet_command.h"

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "project/selection.h"

namespace orma::cli {
namespace {

struct SheetOptions {
    std::string take;
    std::string action;
    std::vector<std::string> times;
};

int Run(const Globals& globals, const SheetCommand& command, const SheetOptions& options) {
    const std::size_t count = options.times.size();
    const bool lists = options.action == "list";
    if (lists ? count > 0 : count < command.leastTimes || count > command.mostTimes)
        throw UsageError(command.wrongTimes);
    const Text path = TakePath(options.take);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    OpenTake(app, path);
    if (!lists && !command.change(app, options.action == "add", options.times)) return kFailed;
    Json fields = TakeFields(app);
    fields.update(command.list(app));
    Print(fields, globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddSheetCommand(CLI::App& app, const Globals& globals, Action& action,
                     const SheetCommand& command) {
    auto options = std::make_shared<SheetOptions>();
    CLI::App* added = app.add_subcommand(command.name, command.help);
    added->add_option("TAKE", options->take, "Take of a project, or any recording")->required();
    added->add_option("ACTION", options->action, "add, remove or list")
        ->required()
        ->check(CLI::IsMember({"add", "remove", "list"}));
    added->add_option(command.timesName, options->times, command.timesHelp);
    added->callback([&globals, &action, command, options] {
        action = [&globals, command, options] { return Run(globals, command, *options); };
    });
}

}  // namespace orma::cli
