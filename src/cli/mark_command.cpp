#include <algorithm>
#include <stdexcept>

#include "cli/commands.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "cli/sheet_command.h"
#include "project/marks.h"
#include "project/selection.h"

namespace orma::cli {
namespace {

Json Marks(const Application& app) {
    Json fields = {{"marks", Json::array()}};
    for (const std::uint32_t mark : app.recording.sheet.marks)
        fields["marks"].push_back(
            {{"period", mark}, {"time", PositionText(mark, app.audio.PeriodsPerSecond())}});
    return fields;
}

/// Sets or deletes the marks; all times are looked at before the first one is.
bool Change(Application& app, bool add, const std::vector<std::string>& times) {
    const auto isSet = [&](std::uint32_t at) {
        return FindMark(app.recording.sheet, at) < app.recording.sheet.marks.size();
    };
    std::vector<std::uint32_t> positions;
    for (const std::string& time : times) {
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

}  // namespace

void AddMarkCommand(CLI::App& app, const Globals& globals, Action& action) {
    AddSheetCommand(app, globals, action,
                    {.name = "mark",
                     .help = "Set, delete and list the marks of a take",
                     .timesName = "TIME",
                     .timesHelp = "m:ss.hh, seconds or #N periods",
                     .wrongTimes = "add and remove take times, list takes none",
                     .leastTimes = 1,
                     .mostTimes = SheetCommand::kAnyNumber,
                     .change = Change,
                     .list = Marks});
}

}  // namespace orma::cli
