#include "app/start_up.h"

#include <algorithm>
#include <array>

#include "app/application_menu.h"
#include "app/options.h"
#include "base/path.h"
#include "base/small_letter.h"
#include "publish/dialogs/current_accounts.h"

namespace orma {
namespace {

constexpr std::uint32_t kReopenCurrent = 1;
constexpr std::uint32_t kNewNumbered = 2;
constexpr std::uint32_t kReopenLast = 3;

void Recover(Application& app) {
    app.project.RecoverTakes();
    TellRecovered(app);
}

bool LoadAt(Application& app, const Text& folder, const Text& name) {
    app.project.SetPath(folder, name);
    const bool loaded = app.project.LoadProject();
    FollowProject(app);  // also when a refused file left the earlier path standing
    if (loaded) Recover(app);
    return loaded;
}

void NewAt(Application& app, const Text& folder, const Text& name) {
    app.project.SetPath(folder, name);
    app.project.NewProject();
    FollowProject(app);
    Recover(app);
}

/// Finds out what there is to record with. A recorder is its own input unless the settings name
/// one.
void ChooseInput(Application& app) {
    app.externalRecorder.Load(RecorderSettingsOf(app.settings));
    (void)app.externalRecorder.FindExternalRecorder();
    app.audio.externalRecorder = app.externalRecorder.IsPresent();
    Text input = app.settings.AudioInputDevice;
    if (input.empty() && app.externalRecorder.IsPresent()) {
        for (const WaveDeviceInfo& device : app.ports.waves.Inputs())
            if (input.empty() && ExternalRecorderControl::IsRecorderName(device.name))
                input = device.name;
    }
    app.recorder.SetInputDevice(input);
    app.spdif.SetInputSelection(app.settings.SpdifInputSelect);
    app.recorder.SetSpdifInput(app.settings.SpdifInput != 0 ? &app.spdif : nullptr);
}

/// What the user wants to be done with every project that he makes.
void RunPostCreateStep(Application& app) {
    const Text& command = app.settings.PostCreateCommand;
    if (app.settings.PostCreateStep == 0 || command.empty()) return;
    const Text path = app.project.Folder() + app.project.Name() + u".opr";
    if (!app.desktop.StartCommand(command, path)) app.report.ShowError(u"PostCreateCommand");
}

bool ProjectExists(Application& app, const Text& folder, const Text& name) {
    return app.ports.storage.Exists(folder + name + u".opr");
}

/// Loads the project if its file exists. One without a file is none yet, unless its first take was
/// interrupted.
bool ReopenAt(Application& app, const Text& folder, const Text& name) {
    if (ProjectExists(app, folder, name)) return LoadAt(app, folder, name);
    if (HasInterruptedTakes(app.ports.storage, folder, name)) NewAt(app, folder, name);
    app.project.AdoptTextDraft();
    return true;
}

bool OpenByStartMode(Application& app) {
    const Text folder = app.project.Folder();
    const Text name = app.project.Name();
    switch (app.settings.StartMode) {
        case kReopenCurrent:
            return ReopenAt(app, folder, name);
        case kNewNumbered:
            NewAt(app, folder, FreeProjectName(app.ports.storage, folder, name));
            return true;
        case kReopenLast:
            return ReopenAt(app, app.settings.LastFolder, app.settings.LastName);
        default:
            return true;
    }
}

}  // namespace

void FollowProject(Application& app) {
    app.writerContext.recordingFolder = app.project.Folder();
    app.writerContext.projectName = app.project.Name();
}

void TellRecovered(Application& app) {
    const std::vector<RecoveredTake>& takes = app.project.Recovered();
    if (takes.empty()) return;
    Text text = u"Recovered after an interruption:";
    for (const RecoveredTake& take : takes) {
        const std::uint32_t seconds = take.periods / app.audio.PeriodsPerSecond();
        text += u"\n" + take.name + FormatText("  %02u:%02u", seconds / 60, seconds % 60);
    }
    app.report.Boxes().Show({.text = text, .title = u"Recovery", .icon = BoxIcon::kInformation});
}

void LoadSettings(Application& app) {
    // Missing files are the normal first start; the record then keeps its defaults.
    (void)app.settingsStore.LoadUserState();
    (void)app.settingsStore.LoadConfiguration();
    ApplyAudioSettings(app.settings, app.audio, app.report);
    app.writerContext.publishExtension = app.settings.PublishExtension;
    app.writerContext.live.account = CurrentFtpAccount(app.settings);
    app.input.Load(InputSettingsOf(app.settings), app.audio.sampleRate);
    ChooseInput(app);
    app.player.SetOutputDevice(app.settings.AudioOutputDevice);
    app.transport.SetOptions(TransportOptionsOf(app.settings));
    app.project.SetOptions(ProjectOptionsOf(app.settings));
    app.project.SetPath(AsFolder(app.settings.ProjectsFolder), app.settings.CurrentProjectName);
    FollowProject(app);
}

bool NamesFile(const Text& commandLine) {
    return !commandLine.empty() && commandLine.front() != u' ';
}

bool IsRecordingName(const Text& path) {
    const Text extension = SplitPath(path).extension;
    return std::ranges::any_of(std::array<TextView, 2>{u".wav", u".mp2"}, [&](TextView kind) {
        return std::ranges::equal(extension, kind, {}, SmallLetter);
    });
}

bool OpenProjectAtStart(Application& app, const Text& commandLine) {
    if (!NamesFile(commandLine)) return OpenByStartMode(app);
    const PathParts parts = SplitPath(commandLine);
    const bool isRecording = IsRecordingName(commandLine);
    const Text path = isRecording ? commandLine : parts.folder + parts.name + u".opr";
    const bool exists = app.ports.storage.Exists(path);
    if (!exists) app.report.ShowError(u"There is no file\n" + path);
    if (!isRecording) return exists && OpenProject(app, path);
    const bool opened = OpenByStartMode(app);
    return exists && MenuOpenClip(app, path) && opened;
}

bool RestoreProject(Application& app, const Text& path) {
    const PathParts parts = SplitPath(path);
    if (ProjectExists(app, parts.folder, parts.name)) return LoadAt(app, parts.folder, parts.name);
    NewAt(app, parts.folder, parts.name);
    return true;
}

bool OpenOrCreateProject(Application& app, const Text& path) {
    const PathParts parts = SplitPath(path);
    const bool existed = ProjectExists(app, parts.folder, parts.name);
    if (!RestoreProject(app, path)) return false;
    if (!existed && app.project.Recovered().empty()) RunPostCreateStep(app);
    return true;
}

bool OpenProject(Application& app, const Text& path) {
    const PathParts parts = SplitPath(path);
    return LoadAt(app, parts.folder, parts.name);
}

bool SaveUserState(Application& app) {
    app.settings.LastFolder = app.project.Folder();
    app.settings.LastName = app.project.Name();
    app.settings.InputGain = app.input.InputGainDb();
    app.settings.OutputVolumeStep = static_cast<std::int32_t>(app.input.OutputStep());
    app.settings.CurrentPresetName = app.input.CurrentSetName();
    app.settings.MaycomGain = app.externalRecorder.GainCode();
    app.settings.MaycomVol = app.externalRecorder.VolumeCode();
    return app.settingsStore.SaveUserState();
}

bool ShutDown(Application& app) {
    const bool projectSaved = app.project.SaveProject();
    app.player.WavExitPlaying();
    app.recorder.WavCloseRecording();  // a take that is still open is kept and saved by this
    return SaveUserState(app) && projectSaved;
}

}  // namespace orma
