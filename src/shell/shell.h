#pragma once

#include <array>
#include <functional>
#include <memory>

#include "app/application.h"
#include "shell/dialogs.h"
#include "shell/file_commands.h"
#include "shell/keyboard_focus.h"
#include "shell/main_menus.h"
#include "shell/main_window.h"
#include "shell/text_editor.h"
#include "ui/screens/w_win.h"

namespace orma {

/// Makes a screen; null: its place stays empty.
using ScreenFactory = std::function<std::unique_ptr<WWin>(ScreenIndex)>;

/// What the shell stands on; all outlive it, but for the application, which listens to the shell
/// and may be built after it and destroyed before it: the shell touches it in its operations alone,
/// and once it is closed nothing calls them.
struct ShellServices {
    Application& app;
    MainWindow& window;
    Dialogs& dialogs;
    ScreenFactory makeScreen;
    TextEditor& textEditor;
    PublishDialogs& publishDialogs;
};

/// The window's application shell: keeps the table of screens, one of which is entered, carries
/// commands out, gives pointer, keys and timer to the current screen and what transport, recorder
/// and player tell to all of them, and keeps the menu bar true. The toolkit's window calls it and
/// is driven through MainWindow; nothing here knows the toolkit. UI thread.
class Shell : public ScreenHost, public TransportListener {
  public:
    static constexpr std::size_t kScreens = 6;
    static constexpr std::uint32_t kTimerMs = 20;

    explicit Shell(ShellServices services);
    ~Shell() override;
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    // The life of the window.

    /// The window was created with this client area: starts timer 1, makes the screens and enters
    /// the recorder.
    void Open(Size client);

    /// Ends what lives in the window (timer, take, playing, screens, in this order), closes it and
    /// asks the event loop to end. Nothing when it is not open. A take that is still recorded is
    /// kept without what the device holds of it: OnCloseRequest loses nothing.
    void Close();

    [[nodiscard]] bool IsOpen() const { return open_; }

    /// True once the program is to end: long work stops then.
    [[nodiscard]] bool IsQuitting() const { return quitting_; }

    // What the toolkit's window tells.

    /// The user, the session or another instance wants the program to end. A take that is being
    /// recorded is stopped first, and the event loop ends once it is closed, or after
    /// kClosePatienceMs with a device that does not answer; without one it ends at once.
    void OnCloseRequest();
    static constexpr std::uint32_t kClosePatienceMs = 5000;

    /// A frame is about to be shown: paints the current screen if the image is out of date.
    void OnPaint();

    /// A command of menus and pop-ups; `notification` is the list view's. False when the id is
    /// none.
    bool OnCommand(std::uint32_t id, std::uint32_t notification = 0);

    /// The menu at that place is about to open: brings it up to date and returns it as it is to be
    /// shown.
    [[nodiscard]] const Menu& OnMenuOpening(TopMenu menu);

    void OnLeftDown(Point at);
    void OnPointerMove(Point at);
    void OnLeftUp(Point at);
    void OnWheel(Point at, int steps, bool sideways);
    void OnRightDown(Point at);
    void OnRightUp(Point at);

    /// `shift`: the Shift key is held.
    void OnKeyDown(Key key, bool shift = false);

    /// Only the hardware's record key acts when it is let go: it stops what is saved or played,
    /// else it is the Record button.
    void OnKeyUp(Key key);

    /// Timer 1 ticks in another period from now on; 0: not at all.
    void SetTimer(std::uint32_t periodMs);

    /// The user dropped that file on the window; see OpenFile.
    void OnDrop(const Text& path) { OpenFile(*this, path); }

    // Screens.

    /// Closes the text editor, if it is open, and makes that screen the current one: the other one
    /// is left, this one entered. The one that is current already only has its menu entry ticked.
    /// Nothing when there is no such screen.
    void SelectScreen(ScreenIndex index);

    /// The one before; the text editor when that was open.
    [[nodiscard]] ScreenIndex PreviousScreen() const { return previous_; }
    [[nodiscard]] ScreenIndex CurrentScreen() const { return currentIndex_; }

    /// Null for an empty place.
    [[nodiscard]] WWin* Screen(ScreenIndex index) const;

    /// Project, recording or its marks and cuts are not what they were: the current screen reads
    /// them anew and is painted.
    void Refresh();

    /// A job that blocked the event loop is over: no click that was made meanwhile acts any more,
    /// and closing the window counts now.
    void EndJob();

    /// The current project becomes the first of the recent ones, once it has a file.
    void NoteProject();

    /// Opens the text editor over the current screen unless it is open.
    void OpenTextEditor();
    void CloseTextEditor();

    /// The keys of all screens, as they work at present.
    [[nodiscard]] std::vector<ShortcutGroup> Shortcuts() const;

    // For what belongs to the window.

    [[nodiscard]] Application& App() { return s_.app; }
    [[nodiscard]] Dialogs& UserDialogs() { return s_.dialogs; }
    [[nodiscard]] PublishDialogs& Publishing() { return s_.publishDialogs; }

    void ShowNote(const Note& note) { s_.window.ShowNote(note); }
    void ShowWaitCursor(bool on) { s_.window.ShowWaitCursor(on); }

    /// The place of the pointer, for the scenes of screens; valid as long as the shell lives.
    [[nodiscard]] const Pointer& PointerState() const { return pointer_; }

    /// The control that the keyboard works on, null without one.
    [[nodiscard]] Win* Focused() const { return focus_.Control(); }

    /// The menu bar as it is shown.
    [[nodiscard]] const MenuBar& Menus() const { return bar_; }

    // ScreenHost
    void TickScreen(ScreenIndex screen, bool on) override;
    void Invalidate() override;
    void UpdateMenus() override;
    void Announce(const Text& text) override { s_.window.Announce(text); }

    // TransportListener: to every screen.
    void OnTransportState(TransportState state, const LitButtons& lit) override;
    void OnMarkText(const Text& text, std::uint32_t periods) override;
    void OnEdgeMoved(const EdgeMove& move) override;
    void OnLevel(std::uint8_t level) override;
    void OnSavedPeriods(std::uint32_t count) override;
    void OnSavingStarted() override;
    void OnSavingStopped() override;
    void OnTimeLeftChanged() override;
    void OnIndicator(bool lit) override;
    void OnMark(std::uint32_t number) override;
    void OnStopped() override;
    void OnClosed() override;
    void OnInputLost(WaveLoss reason) override;
    void OnPosition(std::uint32_t heard, std::uint8_t level) override;
    void OnPlaceMoved(std::uint32_t position) override;
    void OnCutChosen(std::int32_t index) override;
    void OnPlaying(bool playing) override;

    /// The first screen that has more to be heard answers.
    std::optional<PeriodRange> NextRange() override;
    void OnPlayedOut() override;
    void OnOutputLost(WaveLoss reason) override;

  private:
    void CreateScreens();
    void DestroyScreens();
    void Enter(ScreenIndex index);
    void Quit();
    [[nodiscard]] WWin* Current() const { return Screen(currentIndex_); }
    [[nodiscard]] MenuState StateOfMenus() const;
    [[nodiscard]] MenuBar BarOfNow() const;

    /// Calls an operation of every screen there is.
    template <typename Operation, typename... Arguments>
    void TellScreens(Operation operation, const Arguments&... arguments) {
        for (const auto& screen : screens_)
            if (screen != nullptr) (screen.get()->*operation)(arguments...);
    }

    ShellServices s_;
    KeyboardFocus focus_;
    std::array<std::unique_ptr<WWin>, kScreens> screens_;
    ScreenIndex currentIndex_ = ScreenIndex::kTextEditor;  // whose place is empty: none yet
    ScreenIndex previous_ = ScreenIndex::kTextEditor;
    std::array<bool, kScreens> ticked_{};
    MenuBar bar_;
    bool holdMenus_ = false;  // they are updated once, when the screen has changed
    Size client_;
    bool open_ = false;
    bool quitting_ = false;
    bool outOfDate_ = false;
    bool pressed_ = false;
    Pointer pointer_;
    Win* captured_ = nullptr;
    std::unique_ptr<Timer> timer_;
    std::unique_ptr<Timer> closePatience_;
};

}  // namespace orma
