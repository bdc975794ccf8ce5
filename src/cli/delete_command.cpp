#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/application_menu.h"
#include "app/start_up.h"
#include "audio/files/take_repair.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/output.h"
#include "cli/project_path.h"

namespace orma::cli {
namespace {

bool IsBusy(Storage& storage, const PathParts& chosen) {
    const Text base = chosen.folder + chosen.name;
    if (chosen.extension != u".opr") return IsBeingRecorded(storage, base + u".wav");
    for (int number = 0; number < 100; ++number)
        if (IsBeingRecorded(storage, base + FormatText("%.2d.wav", number))) return true;
    return false;
}

int Delete(const Globals& globals, const std::string& argument, bool yes) {
    const Text asked = CallerPath(argument);
    const bool isProject = SplitPath(asked).extension == u".opr";
    const Text path = isProject ? ProjectPath(argument) : TakePath(argument);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the file does not exist: " + argument);
    // The project of a take is to forget it.
    const Text project = isProject ? path : ProjectOfTake(app, path);
    if (!project.empty() && !OpenProject(app, project)) return kFailed;
    if (yes) environment.Boxes().AnswerQuestionsWith(BoxAnswer::kOk);
    if (IsBusy(app.ports.storage, SplitPath(path)))
        throw std::runtime_error("it is being recorded: " + argument);
    if (!MenuDelete(app, path)) {
        if (!yes) std::fprintf(stderr, "orma: nothing was deleted; --yes says OK\n");
        return kFailed;
    }
    Print({{"deleted", ToJson(path)}}, globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddDeleteCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto path = std::make_shared<std::string>();
    auto yes = std::make_shared<bool>(false);
    CLI::App* command =
        app.add_subcommand("delete", "Delete a take, or a project with all its takes");
    command->add_option("PATH", *path, "Take (.wav, .mp2) or project file (.opr)")->required();
    command->add_flag("--yes", *yes, "Answer the question with OK");
    command->footer("Without --yes nothing is deleted.");
    command->callback([&globals, &action, path, yes] {
        action = [&globals, path, yes] { return Delete(globals, *path, *yes); };
    });
}

}  // namespace orma::cli
