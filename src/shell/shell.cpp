#include "shell/shell.h"

#include "base/trace.h"
#include "project/marks.h"
#include "shell/command_table.h"

namespace orma {
namespace {

constexpr std::size_t PlaceOf(ScreenIndex index) {
    return static_cast<std::size_t>(index);
}

constexpr Command CommandOf(ScreenIndex index) {
    return static_cast<Command>(static_cast<std::uint32_t>(Command::kRecorder) +
                                static_cast<std::uint32_t>(index));
}

MenuOptions OptionsOf(const SettingsRecord& settings) {
    return {.inputOptions = settings.InputOptions != 0,
            .publishClipButton = settings.PublishClipButton != 0,
            .imagePublishing = settings.ImagePublishing != 0,
            .publishToFile = settings.PublishToFile != 0,
            .fastPublishing = settings.FastPublishing != 0};
}

}  // namespace

Shell::Shell(ShellServices services) : s_(std::move(services)), focus_(s_.window) {}

Shell::~Shell() = default;

void Shell::Open(Size client) {
    client_ = client;
    open_ = true;
    SetTimer(kTimerMs);
    s_.app.recentProjects.Load();
    NoteProject();
    CreateScreens();
}

// The order matters: screens hear of the end of a take or of playing while they live.
void Shell::Close() {
    if (!open_) return;
    open_ = false;
    timer_.reset();
    quitting_ = true;
    s_.app.recorder.WavCloseRecording();
    s_.app.player.WavExitPlaying();
    DestroyScreens();
    s_.window.Destroy();
    Quit();
}

void Shell::Quit() {
    closePatience_.reset();
    s_.app.ports.loop.Quit(0);
}

void Shell::OnCloseRequest() {
    quitting_ = true;
    const Application& app = s_.app;
    if (app.transport.IsCapturing()) {
        const bool isFirst = closePatience_ == nullptr;
        if (isFirst)
            closePatience_ = app.ports.loop.StartTimer(kClosePatienceMs, [this] { Quit(); });
        s_.app.transport.Stop(true);
        if (app.transport.IsCapturing()) return;
    }
    Quit();
}

void Shell::SetTimer(std::uint32_t periodMs) {
    timer_.reset();
    if (periodMs == 0) return;
    timer_ = s_.app.ports.loop.StartTimer(periodMs, [this] {
        if (WWin* screen = Current()) screen->Tick();
    });
}

// Screens

void Shell::CreateScreens() {
    for (std::size_t i = 0; i < kScreens; ++i) {
        const auto index = static_cast<ScreenIndex>(i);
        if (index != ScreenIndex::kTextEditor) screens_[i] = s_.makeScreen(index);
    }
    SelectScreen(ScreenIndex::kRecorder);
    UpdateMenus();
}

void Shell::DestroyScreens() {
    CloseTextEditor();
    focus_.Clear();
    captured_ = nullptr;
    holdMenus_ = true;
    if (WWin* screen = Current()) screen->Left();
    for (auto& screen : screens_)
        screen.reset();
}

WWin* Shell::Screen(ScreenIndex index) const {
    return screens_[PlaceOf(index)].get();
}

void Shell::SelectScreen(ScreenIndex index) {
    if (Screen(index) == nullptr) {
        Trace("SelectScreen %d: there is none", static_cast<int>(index));
        return;
    }
    previous_ = currentIndex_;
    if (s_.textEditor.IsOpen()) {
        CloseTextEditor();
        previous_ = ScreenIndex::kTextEditor;
    }
    if (index == currentIndex_)
        TickScreen(index, true);
    else
        Enter(index);
}

void Shell::Enter(ScreenIndex index) {
    focus_.Clear();
    captured_ = nullptr;  // its screen is not shown when the button is let go
    holdMenus_ = true;
    if (WWin* screen = Current()) screen->Left();
    currentIndex_ = index;
    Current()->Entered();
    holdMenus_ = false;
    UpdateMenus();
}

void Shell::EndJob() {
    s_.window.EndJob();
    pressed_ = false;  // the button may be held still
    captured_ = nullptr;
}

void Shell::OpenTextEditor() {
    if (s_.textEditor.IsOpen()) return;
    s_.textEditor.Open();
    TickScreen(ScreenIndex::kTextEditor, true);
}

void Shell::CloseTextEditor() {
    if (!s_.textEditor.IsOpen()) return;
    s_.textEditor.Close();
    TickScreen(ScreenIndex::kTextEditor, false);
}

void Shell::Refresh() {
    if (WWin* screen = Current()) screen->Refresh();
    Invalidate();
}

void Shell::NoteProject() {
    Application& app = s_.app;
    const Text path = app.project.ProjectFilePath();
    if (app.ports.storage.Exists(path)) app.recentProjects.Add(path);
}

void Shell::Invalidate() {
    outOfDate_ = true;
    s_.window.Update({0, 0, client_.width, client_.height});
}

void Shell::OnPaint() {
    if (!outOfDate_) return;
    outOfDate_ = false;
    if (WWin* screen = Current()) screen->Paint();
}

// Commands and menus

bool Shell::OnCommand(std::uint32_t id, std::uint32_t notification) {
    const auto command = static_cast<Command>(id);
    if (const auto recent = RecentPlace(command)) {
        OpenRecentProject(*this, *recent);
    } else {
        const CommandAction action = FindAction(command);
        if (action == nullptr) return false;
        action(*this, notification);
    }
    // A list tells news of every kind, and screens answer it themselves.
    if (command == Command::kListView || !open_) return true;
    UpdateMenus();
    return true;
}

MenuState Shell::StateOfMenus() const {
    const Application& app = s_.app;
    const CurrentRecording& recording = app.recording;
    const RemovedRange* const cut = recording.CurrentCut();
    return {.screen = currentIndex_,
            .capturing = app.transport.IsCapturing(),
            .playing = app.player.IsPlaying(),
            .recorded = recording.length > 0,
            .selection = recording.HasSelection(),
            .cutBegin = cut == nullptr || recording.cursor < cut->end,
            .cutEnd = cut == nullptr || recording.cursor > cut->begin,
            .clips = app.clips.Count() > 0,
            .imagePublishing = app.settings.ImagePublishing != 0,
            .textEditor = s_.textEditor.IsOpen()};
}

MenuBar Shell::BarOfNow() const {
    const Application& app = s_.app;
    const MainMenu kind =
        currentIndex_ == ScreenIndex::kEditor ? MainMenu::kEditor : MainMenu::kRecorder;
    MenuBar bar = BuildMenuBar(kind, OptionsOf(app.settings));
    AddRecentProjects(bar.menus[static_cast<std::size_t>(TopMenu::kFile)],
                      app.recentProjects.Paths());
    const LevelSheet& sheet = app.recording.sheet;
    RenewMarkItem(bar.menus[static_cast<std::size_t>(TopMenu::kEdit)],
                  FindMark(sheet, app.recording.cursor) < sheet.marks.size());
    EnableItems(bar, StateOfMenus());
    for (std::size_t i = 0; i < kScreens; ++i)
        bar.Tick(CommandOf(static_cast<ScreenIndex>(i)), ticked_[i]);
    return bar;
}

void Shell::UpdateMenus() {
    if (!open_ || holdMenus_) return;
    MenuBar bar = BarOfNow();
    if (bar == bar_) return;
    bar_ = std::move(bar);
    s_.window.SetMenuBar(bar_);
}

const Menu& Shell::OnMenuOpening(TopMenu menu) {
    const auto place = static_cast<std::size_t>(menu);
    bar_.menus[place] = BarOfNow().menus[place];
    return bar_.menus[place];
}

void Shell::TickScreen(ScreenIndex screen, bool on) {
    ticked_[PlaceOf(screen)] = on;
    UpdateMenus();
}

}  // namespace orma
