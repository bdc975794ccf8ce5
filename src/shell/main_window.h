#pragma once

#include <cstdint>

#include "base/text.h"
#include "shell/menu_bar.h"
#include "shell/note.h"
#include "ui/paint/geometry.h"

namespace orma {

/// The toolkit's window as the shell drives it. One client area with one image, a menu bar above
/// it. UI thread.
class MainWindow {
  public:
    virtual ~MainWindow() = default;

    /// Creates the window with this client area below its menu bar, not resizable, not yet shown.
    /// False when there can be none.
    [[nodiscard]] virtual bool Create(const Text& title, Size client) = 0;
    virtual void Show() = 0;

    /// Comes to the front of the desktop.
    virtual void Raise() = 0;

    /// Closes and forgets the window; nothing when there is none.
    virtual void Destroy() = 0;

    /// Shows this menu bar in place of the one before.
    virtual void SetMenuBar(const MenuBar& bar) = 0;

    /// The window's image has changed there; the next frame shows it.
    virtual void Update(const Rect& changed) = 0;

    /// The pointer's events keep coming, wherever it is, until it is released.
    virtual void CapturePointer(bool on) = 0;

    /// Frames the control that the keyboard works on, over the window's image; an empty rectangle:
    /// none.
    virtual void ShowFocus(const Rect& control) = 0;

    virtual void ShowWaitCursor(bool on) = 0;

    /// A job that blocked the event loop is over: what the pointer did and nobody saw yet is
    /// dropped, and the close that the user asked for meanwhile is told now.
    virtual void EndJob() = 0;

    /// A screen reader says it; nothing else happens.
    virtual void Announce(const Text& text) = 0;

    /// Tells over the page how something ended well, until the user does the next thing; a screen
    /// reader says it. Unlike a box it wants no answer.
    virtual void ShowNote(const Note& note) = 0;

    /// The width and height of the display, pixels.
    [[nodiscard]] virtual Size Display() = 0;
};

}  // namespace orma
