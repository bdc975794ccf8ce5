#include <optional>

#include <CLI/CLI.hpp>

#include "app/options.h"
#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "cli/position.h"
#include "cli/progress_line.h"
#include "cli/project_path.h"
#include "platform/posix/console.h"

namespace orma::cli {
namespace {

struct PublishOptions {
    std::string project;
    bool cliplist = false;
    std::optional<std::int32_t> clip;  // from 1
    std::string take;
    std::string from;
    std::vector<std::string> to;  // "file", and with --take the range's end
};

/// Takes the destination and the range's end apart: both are told with --to.
struct Targets {
    std::string end;
    bool toFile = false;
};

Targets TargetsOf(const PublishOptions& options) {
    Targets targets;
    for (const std::string& value : options.to) {
        if (value == "file")
            targets.toFile = true;
        else if (targets.end.empty())
            targets.end = value;
        else
            throw UsageError("--to names one destination (file) and one end of the range");
    }
    if (!targets.toFile) throw UsageError("--to file names the destination");
    if (!targets.end.empty() && options.take.empty())
        throw UsageError("not a destination: --to " + targets.end);
    return targets;
}

/// Makes the asked clip or take and its range the current selection.
void Select(const PublishOptions& options, Application& app) {
    if (options.clip && !app.project.SelectClip(*options.clip - 1))
        throw std::runtime_error(Format("the project has no clip %d", *options.clip));
    if (options.take.empty()) return;
    const Text file = app.project.Folder() + FromUtf8(options.take);
    const Text path = file + (app.audio.mp2 ? u".mp2" : u".wav");
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the project has no take " + options.take);
    if (!app.project.OpenRecording(path))
        throw std::runtime_error("the take cannot be read: " + options.take);

    CurrentRecording& recording = app.recording;
    const auto at = [&](const std::string& text, std::uint32_t otherwise) {
        if (text.empty()) return otherwise;
        const auto position = ParsePosition(text, app.audio.PeriodsPerSecond());
        if (!position) throw UsageError("not a time (m:ss.hh, seconds or #N): " + text);
        return *position;
    };
    const std::uint32_t begin = at(options.from, 0);
    const std::uint32_t end = at(TargetsOf(options).end, recording.length);
    if (begin >= end || end > recording.length)
        throw std::runtime_error("the range lies outside the take, which is " +
                                 PositionText(recording.length, app.audio.PeriodsPerSecond()) +
                                 " long");
    recording.selectionStart = begin;
    recording.selectionEnd = end;
}

int Publish(const Globals& globals, const PublishOptions& options) {
    const int choices =
        (options.cliplist ? 1 : 0) + (options.clip ? 1 : 0) + (options.take.empty() ? 0 : 1);
    if (choices != 1) throw UsageError("choose one of --cliplist, --clip and --take");
    (void)TargetsOf(options);  // refused before anything is opened
    const Text path = ProjectPath(options.project);

    ProgressLine progress(ErrorsAreTerminal());
    Environment environment(globals, progress);
    Application& app = environment.App();
    LoadSettings(app);
    if (!app.ports.storage.Exists(path))
        throw std::runtime_error("the project does not exist: " + options.project);
    if (!OpenProject(app, path)) return kFailed;
    Select(options, app);

    app.settings.PublishToFile = 1;  // asked for in so many words
    PublishJob job(app.Publishing());
    const PublishOutcome outcome =
        options.cliplist ? job.MenuPublishCliplistToFile(false) : job.MenuPublishClipToFile(false);
    if (outcome != PublishOutcome::kPublished) return kFailed;
    Print({{"published", ToJson(job.PublishedPath())}}, globals.json);
    // The file is there; an error on the way (a level file that could not be written) still counts.
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddPublishCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<PublishOptions>();
    CLI::App* command =
        app.add_subcommand("publish", "Publish a clip or the clip list as Broadcast-Wave");
    command->add_option("PROJECT", options->project, "Project file (.opr)")->required();
    command->add_flag("--cliplist", options->cliplist, "The whole clip list");
    command->add_option("--clip", options->clip, "One clip, counted from 1")
        ->check(CLI::PositiveNumber);
    auto* take = command->add_option("--take", options->take, "One take by its name");
    command->add_option("--from", options->from, "Where the take begins: m:ss.hh, seconds or #N")
        ->needs(take);
    command
        ->add_option("--to", options->to, "Where to: file; given twice, also where the take ends")
        ->required()
        ->take_all();
    command->footer("The file lies beside the project, its name begins with pub_.");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Publish(globals, *options); };
    });
}

}  // namespace orma::cli
