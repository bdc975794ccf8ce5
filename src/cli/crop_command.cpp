#include <algorithm>
#include <optional>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/position.h"
#include "project/same_path.h"
#include "project/selection.h"
#include "project/sheet_change.h"

namespace orma::cli {
namespace {

struct CropOptions {
    std::string take;
    std::string begin;
    std::string end;
    std::optional<std::int32_t> clip;  // from 1
};

/// Selects the clip that is to be cropped, which OpenTake cannot know when there are more.
void ChooseClip(Application& app, const CropOptions& options, const Text& path) {
    std::vector<std::int32_t> ofTake;
    for (std::int32_t i = 0; i < app.clips.Count(); ++i)
        if (SamePath(app.project.ClipAudioPath(app.clips.At(i)), path)) ofTake.push_back(i + 1);
    if (options.clip) {
        if (std::ranges::find(ofTake, *options.clip) == ofTake.end())
            throw std::runtime_error(Format("clip %d is none of this take", *options.clip));
        if (!app.project.SelectClip(*options.clip - 1))
            throw std::runtime_error(Format("clip %d cannot be read", *options.clip));
    } else if (ofTake.size() > 1) {
        std::string numbers;
        for (const std::int32_t number : ofTake)
            numbers += Format(" %d", number);
        throw UsageError("the take has several clips; --clip chooses among" + numbers);
    }
}

bool CropTo(Application& app, std::uint32_t begin, std::uint32_t end) {
    CurrentRecording& recording = app.recording;
    recording.cursor = begin;
    if (!CropBegin(app.project)) return false;
    recording.cursor = end;
    if (!CropEnd(app.project)) return false;
    if (app.clips.Current() != nullptr) return true;
    // Without a clip the level file holds the selection.
    if (!EnsureLevels(app.project)) return false;
    SheetChange change(app.files, recording);
    recording.sheet.rangeStart = begin;
    recording.sheet.rangeEnd = end;
    return change.Commit();
}

int Crop(const Globals& globals, const CropOptions& options) {
    const Text path = TakePath(options.take);
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    OpenTake(app, path);
    ChooseClip(app, options, path);
    SelectRange(app, options.begin, options.end);
    if (!CropTo(app, app.recording.selectionStart, app.recording.selectionEnd)) return kFailed;
    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    Json fields = TakeFields(app);
    if (app.clips.Current() != nullptr) fields["clip"] = app.clips.CurrentIndex() + 1;
    fields["begin"] = PositionText(app.recording.selectionStart, rate);
    fields["end"] = PositionText(app.recording.selectionEnd, rate);
    fields["plays"] = PositionText(PlayingLength(app.recording), rate);
    Print(fields, globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddCropCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<CropOptions>();
    CLI::App* command = app.add_subcommand(
        "crop", "Limit a take's clip, or its selection, to a range; no sound is deleted");
    command->add_option("TAKE", options->take, "Take of a project, or any recording")->required();
    command->add_option("BEGIN", options->begin, "m:ss.hh, seconds or #N periods")->required();
    command->add_option("END", options->end, "Likewise")->required();
    command->add_option("--clip", options->clip, "Which clip of the list, counted from 1")
        ->check(CLI::PositiveNumber);
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Crop(globals, *options); };
    });
}

}  // namespace orma::cli
