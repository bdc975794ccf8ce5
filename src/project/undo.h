#pragma once

namespace orma {

class Project;

/// True when the last new cut, deletion of a mark or cut, or change of a cut's edge, in the current
/// recording can be taken back.
[[nodiscard]] bool CanUndo(const Project& project);

/// True when it was taken back and can be done again.
[[nodiscard]] bool CanRedo(const Project& project);

/// Takes the last of these back; false when there is none, or (reported) it cannot
/// be: there is no room for the mark or cut, or the level file cannot be written. The current
/// clip's length follows. UI thread.
[[nodiscard]] bool UndoEdit(Project& project);

/// Does again what UndoEdit took back; false as there.
[[nodiscard]] bool RedoEdit(Project& project);

}  // namespace orma
