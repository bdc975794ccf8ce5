#include <limits>
#include <optional>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "base/path.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/output.h"
#include "cli/play_session.h"
#include "cli/position.h"
#include "platform/posix/console.h"
#include "project/recording_access.h"

namespace orma::cli {
namespace {

struct PlayOptions {
    std::string path;
    std::string from;
    std::string to;
};

struct Part {
    std::uint32_t from = 0;
    std::uint32_t to = std::numeric_limits<std::uint32_t>::max();
};

Part PartOf(const PlayOptions& options, std::uint32_t periodsPerSecond) {
    Part part;
    if (!options.from.empty()) part.from = RequirePosition(options.from, periodsPerSecond);
    if (!options.to.empty()) part.to = RequirePosition(options.to, periodsPerSecond);
    if (part.from >= part.to) throw UsageError("--from lies behind --to");
    return part;
}

/// Plays a range of a single take.
bool StartTake(Application& app, const Text& path, const PlayOptions& options) {
    const Text extension = SplitPath(path).extension;
    if (extension != u".wav" && extension != u".mp2")
        throw UsageError("not a project (.opr) or take (.wav, .mp2): " + options.path);
    OpenTake(app, path);
    const std::uint32_t length = app.recording.length;
    const Part part = PartOf(options, app.audio.PeriodsPerSecond());
    if (part.from >= length)
        throw std::runtime_error("the take is only " +
                                 PositionText(length, app.audio.PeriodsPerSecond()) + " long");
    const std::uint16_t channels = ChannelsOf({app.files, app.audio, app.decoder}, path);
    return channels > 0 &&
           app.transport.PlayRange({part.from, std::min(part.to, length)}, channels);
}

/// Plays a part of the clip list.
bool StartList(Application& app, PlayList& list, const PlayOptions& options) {
    const Part part = PartOf(options, app.audio.PeriodsPerSecond());
    list.Trim(part.from, part.to);
    const std::uint16_t channels = list.Channels();
    const std::optional<PeriodRange> first =
        channels > 0 ? list.Next() : std::optional<PeriodRange>();
    if (!first) throw std::runtime_error("nothing of the project can be heard there");
    return app.transport.PlayRange(*first, channels);
}

int Play(const Globals& globals, const PlayOptions& options) {
    const Text path = CallerPath(options.path);
    const bool isProject = SplitPath(path).extension == u".opr";
    PlaySession session(OutputIsTerminal() && !globals.json);
    Environment environment(globals, session, [&session] { session.Stop(); });
    Application& app = environment.App();
    LoadSettings(app);
    if (isProject && !app.ports.storage.Exists(path))
        throw std::runtime_error("the file does not exist: " + options.path);
    if (isProject && !OpenProject(app, path)) return kFailed;

    PlayList list(app.project, 0, std::numeric_limits<std::int32_t>::max());
    session.Attach(app, environment.Loop(), isProject ? &list : nullptr);
    if (!(isProject ? StartList(app, list, options) : StartTake(app, path, options)))
        return kFailed;
    if (!session.WasStopped()) environment.Loop().Run();
    Json summary = {{"played", ToJson(path)}};
    if (isProject) summary["clips"] = list.Played();
    summary["position"] = PositionText(static_cast<std::uint32_t>(app.player.Position()),
                                       app.audio.PeriodsPerSecond());
    summary["stopped"] = session.WasStopped();
    Print(summary, globals.json);
    return session.OutputWasLost() || environment.Boxes().Errors() != 0 ? kFailed : kOk;
}

}  // namespace

void AddPlayCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<PlayOptions>();
    CLI::App* command = app.add_subcommand("play", "Play a project's clips or a take");
    command->add_option("FILE", options->path, "Project (.opr) or take (.wav, .mp2)")->required();
    command->add_option("--from", options->from, "Where to begin: m:ss.hh, seconds or #N periods");
    command->add_option("--to", options->to, "Where to end");
    command->footer(
        "What was cut is left out. Times count along the list, or in a take as recorded. Ctrl-C "
        "stops.");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Play(globals, *options); };
    });
}

}  // namespace orma::cli
