#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/clip_fields.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "cli/position.h"
#include "cli/project_path.h"

namespace orma::cli {
namespace {

int Show(const Globals& globals, const std::string& argument) {
    const Text path = ProjectPath(argument);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    if (!OpenProject(app, path)) return kFailed;

    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    Json project = {{"project", ToJson(app.project.Name())},
                    {"folder", ToJson(app.project.Folder())},
                    {"format", app.audio.mp2 ? "MP2" : "WAV"},
                    {"channels", app.audio.Channels()}};
    if (app.audio.mp2) project["kbit/s"] = app.audio.bitrate.BitsPerSecond() / 1000;
    project["periods a second"] = rate;
    project["last recording"] = app.project.RecordingIndex();
    project["current clip"] = app.clips.CurrentIndex() + 1;
    project["text"] = ToJson(app.project.ProjectText());
    project["total length"] = PositionText(app.clips.TotalLength(), rate);
    project["clips"] = ClipFields(app);
    Print(project, globals.json);
    return kOk;
}

}  // namespace

void AddProjectCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto path = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("project", "Look at a project");
    command->require_subcommand(1);
    CLI::App* show = command->add_subcommand("show", "Show a project's format, text and clips");
    show->add_option("PROJECT", *path, "Project file (.opr)")->required();
    show->callback(
        [&globals, &action, path] { action = [&globals, path] { return Show(globals, *path); }; });
}

}  // namespace orma::cli
