#pragma once

#include <optional>

#include "shell/shortcuts.h"

namespace orma {

/// The questions that the window's commands ask the user. Each call shows one modal dialog and
/// blocks until it is answered; nothing when the user cancelled. `proposed` is what stands in the
/// dialog at first: the path of a file, or of a folder with its separator. UI thread.
class Dialogs {
  public:
    virtual ~Dialogs() = default;

    /// Opening: the path of a file that exists. "OrmA Project (*.opr)".
    [[nodiscard]] virtual std::optional<Text> OpenProject(const Text& proposed) = 0;

    /// Saving: a path with the extension ".opr"; the user agreed to replace what lies there.
    [[nodiscard]] virtual std::optional<Text> NewProject(const Text& proposed) = 0;

    /// Opening: a recording, WAV or MP2.
    [[nodiscard]] virtual std::optional<Text> OpenClip(const Text& proposed) = 0;

    /// Opening: a recording or project that is to be deleted. The command asks once more.
    [[nodiscard]] virtual std::optional<Text> Delete(const Text& proposed) = 0;

    /// Saving: a recording of the proposed one's extension; as NewProject.
    [[nodiscard]] virtual std::optional<Text> SaveSelection(const Text& proposed) = 0;

    /// The folder in which the user keeps documents, with its separator; asks nothing.
    [[nodiscard]] virtual Text Documents() = 0;

    /// "Type in a new name": of a clip.
    [[nodiscard]] virtual std::optional<Text> ClipName(const Text& proposed) = 0;

    /// Lets the user choose the input's equaliser set; the settings follow within.
    virtual void InputOptions() = 0;

    /// "Keyboard shortcuts": shows the list beside the window and returns at once; it goes when the
    /// user closes it, or with the window. A list that is shown already gives way to this one.
    virtual void ShowShortcuts(const std::vector<ShortcutGroup>& groups) = 0;
};

}  // namespace orma
