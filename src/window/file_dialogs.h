#pragma once

#include "shell/dialogs.h"

namespace orma {

struct Application;

/// The questions of the window's commands, over the active window: the desktop's own file dialogs,
/// and the program's own.
class FileDialogs : public Dialogs {
  public:
    /// `app` outlives it; it may be built later.
    explicit FileDialogs(Application& app) : app_(app) {}

    [[nodiscard]] std::optional<Text> OpenProject(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> NewProject(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> OpenClip(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> Delete(const Text& proposed) override;
    [[nodiscard]] std::optional<Text> SaveSelection(const Text& proposed) override;
    [[nodiscard]] Text Documents() override;
    [[nodiscard]] std::optional<Text> ClipName(const Text& proposed) override;

    void InputOptions() override;
    void ShowShortcuts(const std::vector<ShortcutGroup>& groups) override;

  private:
    Application& app_;
};

}  // namespace orma
