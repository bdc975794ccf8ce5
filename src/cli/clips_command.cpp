#include <map>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "base/number.h"
#include "cli/clip_fields.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "cli/project_path.h"
#include "project/clip_operations.h"
#include "project/same_path.h"

namespace orma::cli {
namespace {

using Arguments = std::vector<std::string>;

/// The index of a clip that is counted from 1.
std::int32_t ClipIndex(const Application& app, const std::string& text) {
    const auto number = ParseNumber<std::int32_t>(text);
    if (!number) throw UsageError("not a clip's number: " + text);
    if (*number < 1 || *number > app.clips.Count())
        throw std::runtime_error("the project has no clip " + text);
    return *number - 1;
}

/// Makes the clip current without reading its recording, which may be damaged.
void Choose(Application& app, const std::string& text) {
    (void)app.clips.SetCurrent(ClipIndex(app, text));
}

bool Add(Application& app, const Arguments& arguments) {
    const Text path = TakePath(arguments[0]);
    if (!SamePath(SplitPath(path).folder, app.project.Folder()))
        throw std::runtime_error("the recording lies outside the project's folder: " +
                                 arguments[0]);
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the file does not exist: " + arguments[0]);
    if (!SamePath(path, app.project.Folder() + SplitPath(path).name +
                            (app.audio.mp2 ? u".mp2" : u".wav")))
        throw std::runtime_error("the project has the other format");
    if (!app.project.OpenRecording(path)) return false;  // no clip is current: it goes to the end
    if (arguments.size() == 3) SelectRange(app, arguments[1], arguments[2]);
    return AddCurrentRecording(app.project, false);
}

bool Remove(Application& app, const Arguments& arguments) {
    Choose(app, arguments[0]);
    return RemoveCurrentClip(app.project, false);
}

bool Move(Application& app, const Arguments& arguments) {
    const std::int32_t to = ClipIndex(app, arguments[1]);
    Choose(app, arguments[0]);
    bool saved = true;
    while (saved && app.clips.CurrentIndex() != to)
        saved = app.clips.CurrentIndex() < to ? MoveClipDown(app.project) : MoveClipUp(app.project);
    return saved;
}

bool Rename(Application& app, const Arguments& arguments) {
    return RenameClip(app.project, ClipIndex(app, arguments[0]), FromUtf8(arguments[1]), false);
}

bool List(Application&, const Arguments&) {
    return true;
}

struct ClipAction {
    bool (*run)(Application&, const Arguments&);
    std::size_t least;
    std::size_t most;
    const char* usage;
};

const std::map<std::string, ClipAction>& Actions() {
    static const std::map<std::string, ClipAction> actions = {
        {"list", {List, 0, 0, "list"}},
        {"add", {Add, 1, 3, "add TAKE [BEGIN END]"}},
        {"remove", {Remove, 1, 1, "remove N"}},
        {"move", {Move, 2, 2, "move N PLACE"}},
        {"rename", {Rename, 2, 2, "rename N TITLE"}},
    };
    return actions;
}

struct ClipsOptions {
    std::string project;
    std::string action;
    Arguments arguments;
};

int Clips(const Globals& globals, const ClipsOptions& options) {
    const auto found = Actions().find(options.action);
    if (found == Actions().end()) throw UsageError("not an action: " + options.action);
    const ClipAction& action = found->second;
    const std::size_t count = options.arguments.size();
    if (count < action.least || count > action.most || (action.most == 3 && count == 2))
        throw UsageError(std::string("orma clips PROJECT ") + action.usage);
    const Text path = ProjectPath(options.project);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    if (!OpenProject(app, path)) return kFailed;
    if (!action.run(app, options.arguments)) return kFailed;
    Print({{"project", ToJson(app.project.ProjectFilePath())},
           {"total length", PositionText(app.clips.TotalLength(), app.audio.PeriodsPerSecond())},
           {"clips", ClipFields(app)}},
          globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddClipsCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<ClipsOptions>();
    CLI::App* command = app.add_subcommand("clips", "List and change the clip list of a project");
    command->add_option("PROJECT", options->project, "Project file (.opr)")->required();
    command->add_option("ACTION", options->action, "list, add, remove, move or rename")->required();
    command->add_option("ARGUMENTS", options->arguments, "What the action works on");
    std::string usage = "Clips are counted from 1. Actions:";
    for (const auto& [name, entry] : Actions())
        usage += std::string("\n  ") + entry.usage;
    command->footer(usage);
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Clips(globals, *options); };
    });
}

}  // namespace orma::cli
