#pragma once

#include "shell/main_window.h"
#include "ui/screens/w_win.h"

namespace orma {

/// Reaches every control of a screen without a pointer: Tab and Shift+Tab go round those that have
/// a name and take the pointer, Space presses the one that has the focus, plus and minus turn it,
/// Escape takes the focus away. Without a focus all keys but Tab are the screen's own. UI thread.
class KeyboardFocus {
  public:
    explicit KeyboardFocus(MainWindow& window) : window_(window) {}

    /// True when the key was for the focus.
    bool OnKey(const WWin& screen, Key key, bool shift);

    /// No control has the focus; also for a screen that is left.
    void Clear();

    /// The control that has the focus, null without one.
    [[nodiscard]] Win* Control() const { return control_; }

  private:
    void Move(const WWin& screen, bool back);

    MainWindow& window_;
    Win* control_ = nullptr;
};

}  // namespace orma
