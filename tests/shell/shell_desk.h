#pragma once

#include <deque>
#include <memory>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "shell/held_boxes.h"
#include "shell/job_screen.h"
#include "shell/shell.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_main_window.h"
#include "support/fake_running_instance.h"
#include "support/fake_wave.h"
#include "support/quiet_ports.h"
#include "support/test_files.h"
#include "ui/support/screen_rig.h"

namespace orma::test {

using Log = std::vector<std::string>;
using Texts = std::vector<Text>;

/// A control that logs what the pointer and the keyboard do to it.
class TestControl : public Win {
  public:
    TestControl(const Scene& scene, const Rect& rect, const char* name, Log& log)
        : Win(scene, rect), name_(name), log_(log) {
        SetLabel({ControlRole::kKnob, FromUtf8(name), {}, {}});
    }

    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override {
        log_.push_back("press " + name_);
        if (onPress) onPress();
    }
    void Release() override { log_.push_back("release " + name_); }
    void Drag() override {
        const Point by = scene_.pointer.offset;
        log_.push_back(Format("drag %s %d,%d", name_.c_str(), by.x, by.y));
    }
    void OnWheel(Point at, int steps, bool sideways) override {
        log_.push_back(Format("%s %s %d,%d %d", sideways ? "across" : "wheel", name_.c_str(), at.x,
                              at.y, steps));
    }
    void StepBy(int steps) override { log_.push_back(Format("step %s %d", name_.c_str(), steps)); }

    std::function<void()> onPress;

  private:
    std::string name_;
    Log& log_;
};

/// A screen with two controls, a text between them and a control that is switched off.
class TestScreen : public WWin {
  public:
    TestScreen(ScreenIndex index, const Scene& scene, ScreenHost& host, Log& log)
        : WWin(index, scene, host), log_(log) {
        first = Add(std::make_unique<TestControl>(OwnScene(), Rect{0, 0, 10, 10}, "first", log));
        Add(std::make_unique<Win>(OwnScene(), Rect{10, 0, 10, 10}))
            ->SetLabel({ControlRole::kText, u"a text", {}, {}});
        Add(std::unique_ptr<TestControl>());
        second = Add(std::make_unique<TestControl>(OwnScene(), Rect{20, 0, 10, 10}, "second", log));
        Bind(Key::kEnter, u"play", [] {});
        Bind(Key::k1, u"back", [] {});
        Bind(Key::kLeft, u"back", [] {});
        // Without a name nobody could tell what it is.
        Add(std::make_unique<TestControl>(OwnScene(), Rect{30, 0, 10, 10}, "", log));
    }
    ~TestScreen() override { Note("gone"); }

    void Entered() override {
        Note("entered");
        WWin::Entered();
    }
    void Left() override {
        Note("left");
        WWin::Left();
    }
    void Tick() override { ++ticks; }
    void Paint() override { ++paints; }
    void Refresh() override { Note("refreshed"); }
    void OnKey(Key key) override { log_.push_back(Format("key %d", static_cast<int>(key))); }
    void RightDown(Point at) override { log_.push_back(Format("right down %d,%d", at.x, at.y)); }
    void RightUp(Point at) override { log_.push_back(Format("right up %d,%d", at.x, at.y)); }
    void OnListNotification(std::uint32_t code) override { Note(Format("list %u", code)); }
    void OnLevel(std::uint8_t level) override { levels.push_back(level); }
    std::optional<PeriodRange> NextRange() override { return next; }

    TestControl* first;
    TestControl* second;
    int ticks = 0;
    int paints = 0;
    std::vector<std::uint8_t> levels;
    std::optional<PeriodRange> next;

  private:
    void Note(const std::string& what) {
        log_.push_back(Format("%s %d", what.c_str(), static_cast<int>(Index())));
    }

    Log& log_;
};

/// A user who answers every dialog with the next path of a list, then cancels.
struct ScriptedDialogs : Dialogs {
    explicit ScriptedDialogs(Log& into) : log(into) {}

    [[nodiscard]] std::optional<Text> OpenProject(const Text& p) override {
        return Ask("open project", p);
    }
    [[nodiscard]] std::optional<Text> NewProject(const Text& p) override {
        return Ask("new project", p);
    }
    [[nodiscard]] std::optional<Text> OpenClip(const Text& p) override {
        return Ask("open clip", p);
    }
    [[nodiscard]] std::optional<Text> Delete(const Text& p) override { return Ask("delete", p); }
    [[nodiscard]] std::optional<Text> SaveSelection(const Text& p) override {
        return Ask("save selection", p);
    }
    [[nodiscard]] Text Documents() override { return documents; }
    [[nodiscard]] std::optional<Text> ClipName(const Text& p) override {
        return Ask("clip name", p);
    }
    void InputOptions() override { log.emplace_back("input options"); }
    void ShowShortcuts(const std::vector<ShortcutGroup>& groups) override { shortcuts = groups; }

    std::deque<Text> answers;
    Text documents = u"/home/anna/Documents/";
    Text proposed;
    std::vector<ShortcutGroup> shortcuts;
    Log& log;

  private:
    std::optional<Text> Ask(const char* what, const Text& proposal) {
        log.emplace_back(what);
        proposed = proposal;
        if (answers.empty()) return std::nullopt;
        const Text answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

struct FakeTextEditor : TextEditor {
    explicit FakeTextEditor(Log& into) : log(into) {}
    [[nodiscard]] bool IsOpen() const override { return isOpen; }
    void Open() override {
        isOpen = true;
        log.emplace_back("open text");
    }
    void Close() override {
        isOpen = false;
        log.emplace_back("close text");
    }

    Log& log;
    bool isOpen = false;
};

/// Real files that log when a project or the user state is in its place.
class LoggingStorage : public PosixStorage {
  public:
    explicit LoggingStorage(Log& log) : log_(log) {}
    [[nodiscard]] SystemError Rename(const Text& from, const Text& to) override {
        const PathParts parts = SplitPath(to);
        if (parts.extension == u".opr" || parts.extension == u".sup")
            log_.push_back("save " + ToUtf8(parts.name + parts.extension));
        return PosixStorage::Rename(from, to);
    }

  private:
    Log& log_;
};

/// Publish dialogs that are cancelled.
struct CancelledPublishing : PublishDialogs {
    [[nodiscard]] bool ShowEmailDialog(EmailDialog&) override { return false; }
    [[nodiscard]] bool ShowFtpDialog(FtpDialog&) override {
        ++shown;
        return false;
    }
    int shown = 0;
};

/// The shell with screens of two controls each, on the whole application, on real files and a
/// scripted microphone.
class ShellDesk {
  public:
    explicit ShellDesk(FtpClients* liveFtp = nullptr)
        : shell({.app = app,
                 .window = window,
                 .dialogs = dialogs,
                 .makeScreen = [this](ScreenIndex index) { return Make(index); },
                 .textEditor = editor,
                 .publishDialogs = publishing}),
          app({.storage = storage,
               .clock = clock,
               .boxes = held,
               .loop = loop,
               .waves = waves,
               .headset = headset,
               .liveFtp = liveFtp},
              {shell, progress}, folder.Path()) {}

    /// What StartWindow does, without looking at other instances.
    void Open() {
        LoadSettings(app);
        shell.Open({240, 270});
        held.Release();
        log.clear();
    }

    /// A project with a take of 40 periods, as the recorder's state has it.
    void RecordTake(const Text& name = u"city") {
        app.project.SetPath(folder.Path(), name);
        app.project.NewProject();
        FollowProject(app);
        app.transport.Record(true);
        app.transport.Play(true);
        Deliver(41);
        app.transport.Stop(true);
        loop.RunPending();
        ASSERT_TRUE(app.recorder.IsClosed());
        ASSERT_GE(app.recording.length, 40U);
        log.clear();
    }

    void Deliver(int periods) {
        for (int i = 0; i < periods; ++i)
            ASSERT_TRUE(waves.in.DeliverValue(1000));
    }

    void Choose(Command command, std::uint32_t notification = 0) {
        EXPECT_TRUE(shell.OnCommand(static_cast<std::uint32_t>(command), notification));
    }

    [[nodiscard]] TestScreen& At(ScreenIndex index) {
        return dynamic_cast<TestScreen&>(*shell.Screen(index));
    }

    /// The line of the menus as the window shows it.
    [[nodiscard]] MenuItem Item(Command command) const {
        for (const Menu& menu : window.menus.menus)
            for (const MenuItem& item : menu.items)
                if (item.kind != MenuItem::Kind::kSeparator && item.command == command) return item;
        ADD_FAILURE() << "not in the menus: " << static_cast<int>(command);
        return {};
    }

    Log log;
    TempFolder folder;
    LoggingStorage storage{log};
    FakeBoxes boxes;
    HeldBoxes held{boxes};
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    NoHeadset headset;
    ScreenRig rig;
    FakeMainWindow window{log};
    FakeRunningInstance running{log};
    ScriptedDialogs dialogs{log};
    FakeTextEditor editor{log};
    CancelledPublishing publishing;
    Shell shell;
    JobScreen progress{shell};
    Application app;

  private:
    std::unique_ptr<WWin> Make(ScreenIndex index) {
        const Scene scene{rig.skin, rig.canvas, shell.PointerState(), rig.scene.pages};
        return std::make_unique<TestScreen>(index, scene, shell, log);
    }
};

struct ShellTest : ShellDesk, testing::Test {
    ShellTest() { Open(); }
};

}  // namespace orma::test
