#pragma once

#include <functional>
#include <memory>

#include "shell/main_window.h"
#include "window/page_client.h"

namespace orma {

class PageWidget;

/// The window of the desktop: a menu bar over one page. The bar is told what a menu shows when it
/// opens, and carries every choice to its client as a command.
class QtMainWindow : public MainWindow {
  public:
    /// What the window asks and tells besides the page's own events.
    class Client : public PageClient {
      public:
        virtual void OnCommand(Command command) = 0;

        /// The menu at that place is about to open: how it is to be shown.
        [[nodiscard]] virtual const Menu& OnMenuOpening(std::size_t place) = 0;

        /// The picture of a menu's bitmap line.
        [[nodiscard]] virtual const Picture& MenuBitmap() = 0;

        /// Whether a file of that name may be dropped on the window, and one that was.
        [[nodiscard]] virtual bool TakesDrop(const Text& path) = 0;
        virtual void OnDrop(const Text& path) = 0;

        /// The user closes the window, which stays until Destroy.
        virtual void OnCloseRequest() = 0;
    };

    /// `client` outlives it; it is asked for nothing before Create.
    explicit QtMainWindow(Client& client);
    ~QtMainWindow() override;
    QtMainWindow(const QtMainWindow&) = delete;
    QtMainWindow& operator=(const QtMainWindow&) = delete;

    [[nodiscard]] bool Create(const Text& title, Size client) override;
    void Show() override;
    void Raise() override;

    /// Not from within an event of the window.
    void Destroy() override;
    void SetMenuBar(const MenuBar& bar) override;
    void Update(const Rect& changed) override;
    void CapturePointer(bool on) override;
    void ShowFocus(const Rect& control) override;
    void ShowWaitCursor(bool on) override;
    void EndJob() override;
    void Announce(const Text& text) override;
    void ShowNote(const Note& note) override;
    [[nodiscard]] Size Display() override;

    /// For long work that blocks the event loop: shows what has changed and lets the left button
    /// reach the page. Keys wait until the next turn of the loop, a wish to close until EndJob; all
    /// else that the user does is dropped, timers too; wake-ups wait. Nothing without a window.
    void ServeJob();

    /// The client area; null without a window.
    [[nodiscard]] PageWidget* Page();

    /// Saves the window as it looks, menu bar included. False when it cannot be written.
    [[nodiscard]] bool Save(const Text& path);

  private:
    class Window;

    Client& client_;
    std::unique_ptr<Window> window_;
    bool waiting_ = false;
};

}  // namespace orma
