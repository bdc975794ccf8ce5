#pragma once

#include "shell/dialogs.h"

namespace orma {

/// The desktop's own file dialogs, over the active window.
class FileDialogs : public Dialogs {
  public:
    [[nodiscard]] std::optional<Text> OpenProject(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> NewProject(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> OpenClip(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> Delete(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> SaveSelection(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> ClipName(const Text& proposed) override;

    /// Not offered by the menus.
    void InputOptions() override {}
    void ShowShortcuts(const std::vector<ShortcutGroup>& groups) override;
};

}  // namespace orma
