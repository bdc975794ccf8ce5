#include "window/window_session.h"

#include <QCoreApplication>
#include <QDir>
#include <chrono>

#include "app/start_up.h"
#include "ui/screens/about_w_win.h"
#include "ui/screens/clip_editor_w_win.h"
#include "ui/screens/editor_w_win.h"
#include "ui/screens/progress_w_win.h"
#include "ui/screens/record_w_win.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

constexpr Pages kProgressPages{492, 493};
constexpr Pages kClipPages{496, 497};
constexpr Pages kAboutPages{498, 499};
constexpr std::uint64_t kShortMemory = 16U << 20;  // bytes
constexpr ProductVersion kVersion{ORMA_VERSION_NUMBERS};

/// Uploads that accompanied recordings stand a stall of two minutes; the window is gone meanwhile.
class UploadPatience : public Patience {
  public:
    [[nodiscard]] bool GoOn() override { return std::chrono::steady_clock::now() < end_; }

  private:
    std::chrono::steady_clock::time_point end_ =
        std::chrono::steady_clock::now() + std::chrono::minutes(2);
};

/// Where the skin folders lie: beside the settings when the user has some there, else the shipped
/// ones beside the program.
Text SkinRoot(const Text& programFolder, Size client) {
    const auto exists = [&](const Text& root) {
        return QDir(PathToQt(SkinFolder(root, client))).exists();
    };
    const Text shipped = PathFromQt(QCoreApplication::applicationDirPath() +
                                    QStringLiteral("/../share/orma-edit/skin/"));
    return !exists(programFolder) && exists(shipped) ? shipped : programFolder;
}

AboutInfo InfoOf(Application& app, SystemStatus& system) {
    const auto memory = system.FreeMemory();
    return {.freeMemory = memory,
            .memoryIsShort = memory && *memory < kShortMemory,
            .processorLoad = system.ProcessorLoad(),
            .battery = system.BatteryPercent(),
            .projectLocation = app.project.Folder(),
            .mp2 = app.audio.mp2,
            .stereo = app.audio.stereo,
            .bitrate = app.audio.bitrate.BitsPerSecond() / 1000,
            .equalizerOn = !app.input.CurrentSetName().empty(),
            .equalizerSet = app.input.CurrentSetName(),
            .secondsLeft = app.recorder.RecordingTimeLeft()};
}

}  // namespace

WindowSession::WindowSession(Machine& machine, RunningInstance& running)
    : running_(running),
      boxes_(machine.Boxes()),
      shell_({.app = app_,
              .window = window_,
              .dialogs = dialogs_,
              .makeScreen = [this](ScreenIndex index) { return MakeScreen(index); },
              .textEditor = textEditor_,
              .publishDialogs = publishDialogs_}),
      app_(machine.MakePorts(boxes_), {shell_, progress_}, machine.ProgramFolder()) {}

// Whatever was left open is closed while everything that it tells still lives.
WindowSession::~WindowSession() {
    shell_.Close();
}

WindowParts WindowSession::Parts() {
    return {app_,     shell_, window_,
            running_, boxes_, [this](const WindowLook& look) { LoadSkin(look); }};
}

bool WindowSession::Start(const Text& commandLine) {
    return StartWindow(Parts(), commandLine);
}

bool WindowSession::End() {
    UploadPatience patience;
    return EndWindow(Parts(), patience);
}

std::span<const std::unique_ptr<Win>> WindowSession::Controls() {
    const WWin* const screen = shell_.Screen(shell_.CurrentScreen());
    if (screen == nullptr) return {};
    return screen->Controls();
}

void WindowSession::LoadSkin(const WindowLook& look) {
    constexpr std::int32_t kUpsideDown = 2;
    background_ = look.background;
    image_ = {look.client.width, look.client.height, {}};
    image_.pixels.resize(static_cast<std::size_t>(image_.width) *
                         static_cast<std::size_t>(image_.height));
    skin_.emplace(app_.ports.storage, bitmaps_, SkinRoot(app_.programFolder, look.client),
                  look.client, app_.settings.Orientation == kUpsideDown);
    canvas_.emplace(image_, ink_, [this](const Rect& changed) { window_.Update(changed); });
}

std::unique_ptr<WWin> WindowSession::MakeScreen(ScreenIndex index) {
    const auto scene = [this](Pages pages) {
        return Scene{*skin_, *canvas_, shell_.PointerState(), pages};
    };
    switch (index) {
        case ScreenIndex::kRecorder:
            return MakeRecorder();
        case ScreenIndex::kAbout:
            return std::make_unique<AboutWWin>(scene(kAboutPages), shell_, kVersion,
                                               [this] { return InfoOf(app_, system_); });
        case ScreenIndex::kProgress: {
            auto screen = std::make_unique<ProgressWWin>(scene(kProgressPages), shell_,
                                                         app_.ports.clock, [this] {
                                                             window_.ServeJob();
                                                             if (duringJobs_) duringJobs_();
                                                         });
            progress_.ShowOn(screen.get());
            return screen;
        }
        case ScreenIndex::kEditor:
            return std::make_unique<EditorWWin>(
                scene(background_), shell_,
                EditorScreenServices{app_.transport, app_.recorder, app_.project, app_.recording,
                                     app_.audio, app_.externalRecorder},
                app_.settings.FullBarRedraw != 0);
        case ScreenIndex::kClipEditor:
            return MakeClipEditor();
        case ScreenIndex::kTextEditor:
            break;
    }
    return nullptr;
}

std::unique_ptr<WWin> WindowSession::MakeRecorder() {
    const SettingsRecord& settings = app_.settings;
    return std::make_unique<RecordWWin>(
        Scene{*skin_, *canvas_, shell_.PointerState(), background_}, shell_,
        RecorderScreenServices{app_.transport, app_.recorder, app_.recording, app_.audio,
                               app_.input, app_.externalRecorder, system_},
        RecorderScreenOptions{.showMaxTime = settings.ShowMaxTime != 0,
                              .showBattery = settings.ShowBattery != 0,
                              .markButtons = settings.MarkButtons != 0,
                              .gainControl = settings.GainControl != 0,
                              .volumeControl = settings.VolumeControl != 0,
                              .spdif = settings.SpdifInput != 0});
}

std::unique_ptr<WWin> WindowSession::MakeClipEditor() {
    return std::make_unique<ClipEditorWWin>(
        Scene{*skin_, *canvas_, shell_.PointerState(), kClipPages}, shell_,
        ClipEditorServices{app_.transport, app_.project, clipList_,
                           [this] { return dialogs_.OpenClip(app_.recording.audioPath); }},
        app_.settings.DetailedView != 0);
}

}  // namespace orma
