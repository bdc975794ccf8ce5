#pragma once

#include <QDialog>
#include <vector>

#include "shell/shortcuts.h"

namespace orma {

/// The list of keys, in a window of its own beside the one that works on: a reporter tries them
/// while it stands there. It deletes itself when it is closed, and goes with its parent.
class ShortcutsDialog : public QDialog {
  public:
    /// In place of the list that stands over `parent` already.
    static void ShowOver(QWidget* parent, const std::vector<ShortcutGroup>& groups);

  private:
    ShortcutsDialog(QWidget* parent, const std::vector<ShortcutGroup>& groups);
};

}  // namespace orma
