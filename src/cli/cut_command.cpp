#include <algorithm>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "cli/sheet_command.h"
#include "project/cuts.h"
#include "project/selection.h"

namespace orma::cli {
namespace {

Json Cuts(const Application& app) {
    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    const LevelSheet& sheet = app.recording.sheet;
    Json fields;
    fields["left by cuts"] = PositionText(NetLength(sheet.cuts, 0, app.recording.length), rate);
    fields["cuts"] = Json::array();
    for (const RemovedRange& cut : sheet.cuts)
        fields["cuts"].push_back({{"begin", PositionText(cut.begin, rate)},
                                  {"end", PositionText(cut.end, rate)},
                                  {"first period", cut.begin},
                                  {"periods", cut.end - cut.begin}});
    return fields;
}

bool Change(Application& app, bool add, const std::vector<std::string>& range) {
    const std::uint32_t begin = TimeInTake(app, range[0]);
    const std::uint32_t end = TimeInTake(app, range[1]);
    if (add) {
        if (begin >= end) throw UsageError("the cut is empty");
        return EnsureLevels(app.project) && AddCut(app.project, begin, end);
    }
    const auto& cuts = app.recording.sheet.cuts;
    const auto found = std::ranges::find_if(
        cuts, [&](const RemovedRange& cut) { return cut.begin == begin && cut.end == end; });
    if (found == cuts.end())
        throw std::runtime_error("there is no cut from " + range[0] + " to " + range[1]);
    return DeleteCut(app.project, static_cast<std::size_t>(found - cuts.begin()));
}

}  // namespace

void AddCutCommand(CLI::App& app, const Globals& globals, Action& action) {
    AddSheetCommand(app, globals, action,
                    {.name = "cut",
                     .help = "Leave a part of a take out when it is played or published; no sound "
                             "is deleted",
                     .timesName = "RANGE",
                     .timesHelp = "Begin and end: m:ss.hh, seconds or #N periods",
                     .wrongTimes = "add and remove take begin and end, list takes no times",
                     .leastTimes = 2,
                     .mostTimes = 2,
                     .change = Change,
                     .list = Cuts});
}

}  // namespace orma::cli
