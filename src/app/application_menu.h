#pragma once

#include "app/application.h"

namespace orma {

// The file and edit menus behind their dialogs, for the whole application: `path` is what the user
// chose there. Each refuses with its name in an error box while something is recorded or played,
// see project/project_menu.h and project/save_selection.h. Afterwards the writers record beside the
// project that is current, and once a recording was opened, rewritten or deleted the transport
// stands at 0. A window only forwards to them. UI thread.

/// The settings' format and text are those of the new project.
[[nodiscard]] bool MenuNewProject(Application& app, const Text& path);

/// Says in a box which takes it recovered.
[[nodiscard]] bool MenuOpen(Application& app, const Text& path);

[[nodiscard]] bool MenuOpenClip(Application& app, const Text& path);
[[nodiscard]] bool MenuDelete(Application& app, const Text& path);
[[nodiscard]] bool MenuSaveSelAs(Application& app, const Text& path);

/// True while something is recorded, monitored or played, or a take is being finished.
[[nodiscard]] bool IsBusy(const Application& app);

}  // namespace orma
