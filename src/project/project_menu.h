#pragma once

#include "project/project.h"

namespace orma {

// The file menu behind its dialogs: `path` is what the user chose there. `busy`: recording or
// playback is running; then nothing happens but an error box with the operation's name. What the
// application keeps beside the project follows in app/application_menu.h. UI thread.

/// Saves the current project and sets up a new, empty one at `path`. A project file that lies there
/// makes way: ours is kept as ".opr.bak" where it holds clips. False when busy, or that cannot be
/// done (reported). A project that cannot be saved (reported) is left all the same.
[[nodiscard]] bool MenuNewProject(Project& project, const Text& path, bool busy);

/// Saves the current project, loads the one at `path` and recovers its interrupted takes. False
/// when busy or something failed (reported); a file that is refused leaves the project as it was.
[[nodiscard]] bool MenuOpen(Project& project, const Text& path, bool busy);

/// Makes a recording, not necessarily one of the project's folder, the current one.
[[nodiscard]] bool MenuOpenClip(Project& project, const Text& path, bool busy);

/// Asks whether to delete `path` and does so, see Project::DeletePath. False when busy, the answer
/// is not OK, or something could not be deleted (reported).
[[nodiscard]] bool MenuDelete(Project& project, const Text& path, bool busy);

}  // namespace orma
