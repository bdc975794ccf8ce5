#include <algorithm>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "cli/position.h"
#include "cli/project_path.h"

namespace orma::cli {
namespace {

Json Takes(const std::vector<RecoveredTake>& takes, std::uint32_t periodsPerSecond) {
    Json list = Json::array();
    for (const RecoveredTake& take : takes)
        list.push_back({{"take", ToJson(take.name)},
                        {"length", PositionText(take.periods, periodsPerSecond)},
                        {"periods", take.periods}});
    return list;
}

/// Repairs every recording of the clip list and writes the level files that are missing.
struct ClipRepair {
    explicit ClipRepair(Application& app) {
        for (std::int32_t i = 0; i < app.clips.Count(); ++i) {
            const ClipEntry& clip = app.clips.At(i);
            const Text audioPath = app.project.ClipAudioPath(clip);
            if (RepairTake(app.files, audioPath)) repaired.push_back(ToJson(clip.name));
            // What the recovery left alone still has its marks in its journal.
            const std::vector<Text>& leftAlone = app.project.LeftAlone();
            const bool waits = std::ranges::find(leftAlone, clip.name) != leftAlone.end();
            if (waits || app.ports.storage.Exists(clip.BasePath() + u".jvu")) continue;
            if (app.project.RebuildLevels(audioPath))
                levels.push_back(ToJson(clip.name));
            else
                complete = false;
        }
    }

    Json repaired = Json::array();
    Json levels = Json::array();
    bool complete = true;
};

int Recover(const Globals& globals, const std::string& argument, bool all) {
    const Text path = ProjectPath(argument);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    if (!RestoreProject(app, path)) return kFailed;

    std::vector<RecoveredTake> adopted;
    if (all) adopted = app.project.AdoptRecordings();
    const ClipRepair clips(app);
    Json leftAlone = Json::array();
    for (const Text& name : app.project.LeftAlone())
        leftAlone.push_back(ToJson(name));
    const bool complete = clips.complete && leftAlone.empty() && environment.Boxes().Errors() == 0;
    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    Json result = {{"project", ToJson(app.project.ProjectFilePath())},
                   {"recovered", Takes(app.project.Recovered(), rate)},
                   {"left alone", std::move(leftAlone)},
                   {"added", Takes(adopted, rate)},
                   {"repaired", clips.repaired},
                   {"level files rebuilt", clips.levels},
                   {"clips", app.clips.Count()}};
    Print(result, globals.json);
    return complete ? kOk : kFailed;
}

}  // namespace

void AddRecoverCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto path = std::make_shared<std::string>();
    auto all = std::make_shared<bool>(false);
    CLI::App* command =
        app.add_subcommand("recover", "Bring back takes whose recording was interrupted");
    command->add_option("PROJECT", *path, "Project file (.opr); may be missing")->required();
    command->add_flag("--all", *all, "Also add a clip for each recording that has none");
    command->callback([&globals, &action, path, all] {
        action = [&globals, path, all] { return Recover(globals, *path, *all); };
    });
}

}  // namespace orma::cli
