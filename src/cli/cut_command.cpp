#include <algorithm>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "project/cuts.h"
#include "project/selection.h"

namespace orma::cli {
namespace {

struct CutOptions {
    std::string take;
    std::string action;
    std::vector<std::string> range;
};

Json Cuts(const Application& app) {
    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    const LevelSheet& sheet = app.recording.sheet;
    Json fields = TakeFields(app);
    fields["left by cuts"] = PositionText(NetLength(sheet.cuts, 0, app.recording.length), rate);
    fields["cuts"] = Json::array();
    for (const RemovedRange& cut : sheet.cuts)
        fields["cuts"].push_back({{"begin", PositionText(cut.begin, rate)},
                                  {"end", PositionText(cut.end, rate)},
                                  {"first period", cut.begin},
                                  {"periods", cut.end - cut.begin}});
    return fields;
}

bool Change(Application& app, const CutOptions& options) {
    const std::uint32_t begin = TimeInTake(app, options.range[0]);
    const std::uint32_t end = TimeInTake(app, options.range[1]);
    if (options.action == "add") {
        if (begin >= end) throw UsageError("the cut is empty");
        return EnsureLevels(app.project) && AddCut(app.project, begin, end);
    }
    const auto& cuts = app.recording.sheet.cuts;
    const auto found = std::ranges::find_if(
        cuts, [&](const RemovedRange& cut) { return cut.begin == begin && cut.end == end; });
    if (found == cuts.end())
        throw std::runtime_error("there is no cut from " + options.range[0] + " to " +
                                 options.range[1]);
    return DeleteCut(app.project, static_cast<std::size_t>(found - cuts.begin()));
}

int Cut(const Globals& globals, const CutOptions& options) {
    if (options.range.size() != (options.action == "list" ? 0U : 2U))
        throw UsageError("add and remove take begin and end, list takes no times");
    const Text path = TakePath(options.take);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    OpenTake(app, path);
    if (options.action != "list" && !Change(app, options)) return kFailed;
    Print(Cuts(app), globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddCutCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<CutOptions>();
    CLI::App* command = app.add_subcommand(
        "cut", "Leave a part of a take out when it is played or published; no sound is deleted");
    command->add_option("TAKE", options->take, "Take of a project, or any recording")->required();
    command->add_option("ACTION", options->action, "add, remove or list")
        ->required()
        ->check(CLI::IsMember({"add", "remove", "list"}));
    command->add_option("RANGE", options->range, "Begin and end: m:ss.hh, seconds or #N periods");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Cut(globals, *options); };
    });
}

}  // namespace orma::cli
