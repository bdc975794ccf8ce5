#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/application.h"
#include "machine/machine.h"
#include "platform/posix/posix_system_status.h"
#include "platform/running_instance.h"
#include "shell/job_screen.h"
#include "shell/shell.h"
#include "shell/window_start.h"
#include "window/dialogs/qt_publish_dialogs.h"
#include "window/dialogs/qt_text_editor.h"
#include "window/file_dialogs.h"
#include "window/page_widget.h"
#include "window/qt_clip_list.h"
#include "window/qt_ink.h"
#include "window/qt_main_window.h"
#include "window/resource_bitmaps.h"

namespace orma {

/// Everything that lives while the window does: the application on this machine, its shell and
/// screens, and the toolkit's window that shows them. UI thread.
class WindowSession : private QtMainWindow::Client {
  public:
    /// Both outlive it.
    WindowSession(Machine& machine, RunningInstance& running);
    ~WindowSession() override;

    /// See StartWindow.
    [[nodiscard]] bool Start(const Text& commandLine);

    /// Asks for the end as the user does who closes the window.
    void Close() { shell_.OnCloseRequest(); }

    /// `look` is called again and again while a job keeps the event loop from turning.
    void DuringJobs(std::function<void()> look) { duringJobs_ = std::move(look); }

    /// After the event loop; see EndWindow.
    bool End();

    /// Saves the window as it looks. False when it cannot be written.
    [[nodiscard]] bool Save(const Text& path) { return window_.Save(path); }

  private:
    // QtMainWindow::Client: the shell's business.
    [[nodiscard]] const Picture& Image() override { return image_; }
    [[nodiscard]] std::span<const std::unique_ptr<Win>> Controls() override;
    [[nodiscard]] Win* Focused() override { return shell_.Focused(); }
    void BeforePaint() override { shell_.OnPaint(); }
    void LeftDown(Point at) override { shell_.OnLeftDown(at); }
    void LeftUp(Point at) override { shell_.OnLeftUp(at); }
    void Moved(Point at) override { shell_.OnPointerMove(at); }
    void Wheel(Point at, int steps, bool sideways) override { shell_.OnWheel(at, steps, sideways); }
    void RightDown(Point at) override { shell_.OnRightDown(at); }
    void RightUp(Point at) override { shell_.OnRightUp(at); }
    void KeyDown(Key key, bool shift) override { shell_.OnKeyDown(key, shift); }
    void KeyUp(Key key) override { shell_.OnKeyUp(key); }
    void OnCommand(Command command) override {
        (void)shell_.OnCommand(static_cast<std::uint32_t>(command));
    }
    [[nodiscard]] const Menu& OnMenuOpening(std::size_t place) override {
        return shell_.OnMenuOpening(static_cast<TopMenu>(place));
    }
    [[nodiscard]] const Picture& MenuBitmap() override { return skin_->Bitmap(kMenuBitmap); }
    [[nodiscard]] bool TakesDrop(const Text& path) override { return IsOpenable(path); }
    void OnDrop(const Text& path) override { shell_.OnDrop(path); }
    void OnCloseRequest() override { shell_.OnCloseRequest(); }

    void LoadSkin(const WindowLook& look);
    [[nodiscard]] std::unique_ptr<WWin> MakeScreen(ScreenIndex index);
    [[nodiscard]] std::unique_ptr<WWin> MakeRecorder();
    [[nodiscard]] std::unique_ptr<WWin> MakeClipEditor();
    [[nodiscard]] WindowParts Parts();

    static constexpr int kMenuBitmap = 520;

    RunningInstance& running_;
    std::function<void()> duringJobs_;
    HeldBoxes boxes_;
    PosixSystemStatus system_;
    QtInk ink_;
    ResourceBitmaps bitmaps_;
    Picture image_;
    std::optional<Skin> skin_;
    std::optional<Canvas> canvas_;
    Pages background_;
    JobScreen progress_{shell_};
    FileDialogs dialogs_{app_};
    QtPublishDialogs publishDialogs_;
    QtMainWindow window_{*this};
    QtClipList clipList_{[this] { return window_.Page(); }, ink_,
                         [this](ListNotification news) {
                             (void)shell_.OnCommand(static_cast<std::uint32_t>(Command::kListView),
                                                    static_cast<std::uint32_t>(news));
                         }};
    QtTextEditor textEditor_{
        app_,
        {[this]() -> QWidget* { return window_.Page(); }, [this] { shell_.CloseTextEditor(); }}};
    Shell shell_;
    Application app_;
};

}  // namespace orma
