#include <algorithm>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "project/marks.h"
#include "project/selection.h"

namespace orma::cli {
namespace {

struct MarkOptions {
    std::string take;
    std::string action;
    std::vector<std::string> times;
};

Json Marks(const Application& app) {
    Json fields = TakeFields(app);
    fields["marks"] = Json::array();
    for (const std::uint32_t mark : app.recording.sheet.marks)
        fields["marks"].push_back(
            {{"period", mark}, {"time", PositionText(mark, app.audio.PeriodsPerSecond())}});
    return fields;
}

/// Sets or deletes the marks; all times are looked at before the first one is.
bool Change(Application& app, const MarkOptions& options) {
    const bool add = options.action == "add";
    const auto isSet = [&](std::uint32_t at) {
        return FindMark(app.recording.sheet, at) < app.recording.sheet.marks.size();
    };
    std::vector<std::uint32_t> positions;
    for (const std::string& time : options.times) {
        positions.push_back(TimeInTake(app, time));
        if (!add && !isSet(positions.back()))
            throw std::runtime_error("there is no mark at " + time);
    }
    if (!EnsureLevels(app.project)) return false;
    return std::ranges::all_of(positions, [&](std::uint32_t at) {
        if (!add) return DeleteMark(app.files, app.recording, at);
        return isSet(at) || InsertMark(app.files, app.recording, at);
    });
}

int Mark(const Globals& globals, const MarkOptions& options) {
    if ((options.action == "list") != options.times.empty())
        throw UsageError("add and remove take times, list takes none");
    const Text path = TakePath(options.take);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    OpenTake(app, path);
    if (options.action != "list" && !Change(app, options)) return kFailed;
    Print(Marks(app), globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddMarkCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<MarkOptions>();
    CLI::App* command = app.add_subcommand("mark", "Set, delete and list the marks of a take");
    command->add_option("TAKE", options->take, "Take of a project, or any recording")->required();
    command->add_option("ACTION", options->action, "add, remove or list")
        ->required()
        ->check(CLI::IsMember({"add", "remove", "list"}));
    command->add_option("TIME", options->times, "m:ss.hh, seconds or #N periods");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Mark(globals, *options); };
    });
}

}  // namespace orma::cli
