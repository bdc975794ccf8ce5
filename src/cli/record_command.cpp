#include <algorithm>
#include <optional>

#include <CLI/CLI.hpp>

#include "app/options.h"
#include "app/start_up.h"
#include "base/path.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "cli/position.h"
#include "cli/project_path.h"
#include "cli/record_session.h"
#include "cli/upload_wait.h"
#include "platform/posix/console.h"

namespace orma::cli {
namespace {

struct RecordOptions {
    std::string project;
    bool wav = false;
    bool mp2 = false;
    std::optional<unsigned> kilobits;
    bool mono = false;
    bool stereo = false;
    std::string seconds;
    std::vector<std::string> marks;
    std::optional<int> gainDb;
    std::string equalizerSet;
};

constexpr std::int32_t kRecorderCodesPerDb = 2;
constexpr std::int32_t kRecorderCodeOf0Db = 192;

[[nodiscard]] constexpr int RecorderDb(std::int32_t code) {
    return (code - kRecorderCodeOf0Db) / kRecorderCodesPerDb;
}

[[nodiscard]] std::uint32_t BitrateIndex(unsigned kilobits) {
    const auto& rates = Mp2Bitrate::kBitsPerSecond;
    const auto found = std::find(rates.begin(), rates.end(), kilobits * 1000);
    if (found == rates.end())
        throw UsageError("--bitrate takes 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224 or 256");
    return static_cast<std::uint32_t>(found - rates.begin());
}

/// The options name a format for a new project; an existing one records on in its own.
void RefuseOtherFormat(const RecordOptions& options, const AudioState& audio, bool hasTakes) {
    std::string own;
    if ((options.wav && audio.mp2) || (options.mp2 && !audio.mp2))
        own = audio.mp2 ? "MP2" : "WAV";
    else if ((options.mono && audio.stereo) || (options.stereo && !audio.stereo))
        own = audio.stereo ? "stereo" : "mono";
    else if (options.kilobits && audio.mp2 && hasTakes &&
             BitrateIndex(*options.kilobits) != audio.bitrate.Index())
        own = Format("%u kbit/s", audio.bitrate.BitsPerSecond() / 1000);
    if (!own.empty())
        throw UsageError("the project records in " + own +
                         "; the format is that of its first take");
}

void ApplyToNewProject(const RecordOptions& options, Application& app) {
    ProjectOptions project = ProjectOptionsOf(app.settings);
    if (options.wav || options.mp2) project.recordMp2 = options.mp2;
    if (options.mono || options.stereo) project.stereo = options.stereo;
    if (options.kilobits) project.bitrateIndex = BitrateIndex(*options.kilobits);
    app.project.SetOptions(project);
}

/// With an external recorder the gain is its own, and set once its input is open.
void PrepareGain(int decibels, Application& app) {
    const bool recorder = app.externalRecorder.IsPresent();
    const int low = recorder ? RecorderDb(ExternalRecorderControl::kLowestGain) : 0;
    const int high = recorder ? RecorderDb(ExternalRecorderControl::kHighestGain) : 40;
    if (decibels < low || decibels > high)
        throw UsageError(Format("--gain takes %d to %d dB here", low, high));
    if (!recorder) app.input.SetInputGain(decibels - app.input.InputGainDb());
}

/// Makes the project current; false when its file was refused.
bool Prepare(const RecordOptions& options, const Text& path, Application& app) {
    const Text folder = SplitPath(path).folder;
    if (!app.ports.storage.Exists(folder))
        throw std::runtime_error("the folder does not exist: " + ToUtf8(folder));
    const bool exists = app.ports.storage.Exists(path);
    if (!exists) ApplyToNewProject(options, app);
    if (!OpenOrCreateProject(app, path)) return false;
    if (exists || !app.clips.Empty()) RefuseOtherFormat(options, app.audio, !app.clips.Empty());
    if (options.kilobits && !app.audio.mp2) throw UsageError("--bitrate belongs to MP2 projects");
    if (options.gainDb) PrepareGain(*options.gainDb, app);
    if (!options.equalizerSet.empty() && !app.input.SelectByName(FromUtf8(options.equalizerSet)))
        throw UsageError("no equaliser set is named " + options.equalizerSet);
    return true;
}

Json Summary(Application& app, const RecordSession& session) {
    const AudioState& audio = app.audio;
    Json summary = {{"take", ToJson(app.recording.audioPath)},
                    {"levels", ToJson(app.recording.levelPath)},
                    {"format", audio.mp2 ? "MP2" : "WAV"},
                    {"channels", audio.Channels()}};
    if (audio.mp2) summary["kbit/s"] = audio.bitrate.BitsPerSecond() / 1000;
    summary["length"] = PositionText(app.recording.length, audio.PeriodsPerSecond());
    summary["periods"] = app.recording.length;
    summary["marks"] = app.recording.sheet.marks.size();
    summary["lost samples"] = app.recorder.LostFrames();
    summary["input lost"] = session.InputWasLost();
    if (const auto& upload = app.liveUploads->Last())
        summary["upload"] = {
            {"path", ToJson(upload->path)}, {"bytes", upload->bytes}, {"whole", upload->IsWhole()}};
    return summary;
}

/// Runs the recorder until its device is closed; false when it could not be started.
bool RunTake(Environment& environment, const std::optional<int>& gainDb) {
    Application& app = environment.App();
    app.input.ChooseEqualizerForHeadset();
    if (app.recorder.WavStartRecording() != 0) return false;
    if (gainDb && app.externalRecorder.IsPresent())
        app.externalRecorder.SetRecorderGain(kRecorderCodeOf0Db + *gainDb * kRecorderCodesPerDb -
                                             app.externalRecorder.GainCode());
    app.recorder.WavStartRecordSaving();
    environment.Loop().Run();
    return true;
}

int Record(const Globals& globals, const RecordOptions& options) {
    const Text path = ProjectPath(options.project);
    const bool fast = (globals.audio + globals.hardware).find("pace=fast") != std::string::npos;
    if (options.seconds.empty() && fast) throw UsageError("--seconds is needed with pace=fast");

    RecordSession session(OutputIsTerminal() && !globals.json);
    std::optional<UploadWait> uploadWait;
    Environment environment(globals, session, [&session, &uploadWait] {
        session.Stop();
        if (uploadWait) uploadWait->Interrupt();
    });
    Application& app = environment.App();
    uploadWait.emplace(*app.liveUploads, environment.Loop(), ErrorsAreTerminal());
    LoadSettings(app);
    if (!Prepare(options, path, app)) return kFailed;

    const std::uint32_t periodsPerSecond = app.audio.PeriodsPerSecond();
    std::optional<std::uint32_t> length;
    if (!options.seconds.empty()) length = RequirePosition(options.seconds, periodsPerSecond);
    std::vector<std::uint32_t> marks;
    for (const std::string& mark : options.marks)
        marks.push_back(RequirePosition(mark, periodsPerSecond));
    session.Attach(app.recorder, environment.Loop(), periodsPerSecond, length, std::move(marks));

    const std::int32_t clipsBefore = app.clips.Count();
    const bool started = RunTake(environment, options.gainDb);
    const bool kept = app.clips.Count() > clipsBefore;
    const bool saved = ShutDown(app);
    uploadWait->Run();
    if (!started) return kFailed;
    if (!kept) {
        std::fprintf(stderr, "orma: no take was kept: it was shorter than one second\n");
        return kFailed;
    }
    Print(Summary(app, session), globals.json);
    return saved && environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddRecordCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<RecordOptions>();
    CLI::App* command = app.add_subcommand("record", "Record a take into a project");
    command->add_option("PROJECT", options->project, "Project file (.opr); created when missing")
        ->required();
    auto* wav = command->add_flag("--wav", options->wav, "New project: record WAV");
    command->add_flag("--mp2", options->mp2, "New project: record MPEG Layer II")->excludes(wav);
    command->add_option("--bitrate", options->kilobits, "New project: kbit/s of MP2");
    auto* mono = command->add_flag("--mono", options->mono, "New project: one channel");
    command->add_flag("--stereo", options->stereo, "New project: two channels")->excludes(mono);
    command->add_option("--seconds", options->seconds, "Length: m:ss.hh, seconds or #N periods");
    command->add_option("--mark", options->marks, "Set a mark at this time; may be repeated")
        ->take_all();
    command->add_option("--gain", options->gainDb,
                        "Input gain in dB: 0 to 40, of an external recorder -33 to 31");
    command->add_option("--set", options->equalizerSet, "Equaliser set by its name");
    command->footer("Ctrl-C stops the take and keeps it; behind it, it gives up its upload.");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Record(globals, *options); };
    });
}

}  // namespace orma::cli
