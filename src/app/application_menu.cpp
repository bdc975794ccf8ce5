#include "app/application_menu.h"

#include "app/options.h"
#include "app/start_up.h"
#include "project/project_menu.h"
#include "project/save_selection.h"

namespace orma {
namespace {

/// Runs an operation of the project and brings what stands beside it in line.
template <class Operation>
bool Run(Application& app, Operation operation, const Text& path) {
    const bool busy = IsBusy(app);
    const bool done = operation(app.project, path, busy);
    if (busy) return done;
    FollowProject(app);  // also where a refused file left the earlier path standing
    if (app.recording.cursor == 0)
        app.transport.MoveTo(0);  // also what was rewritten but not saved
    return done;
}

using Operation = bool (*)(Project&, const Text&, bool);

}  // namespace

bool IsBusy(const Application& app) {
    return app.recorder.IsActive() || app.recorder.IsSaving() || app.recorder.IsSavingPending() ||
           app.player.IsPlaying();
}

bool MenuNewProject(Application& app, const Text& path) {
    app.project.SetOptions(ProjectOptionsOf(app.settings));
    return Run(app, Operation(MenuNewProject), path);
}

bool MenuOpen(Application& app, const Text& path) {
    if (!Run(app, Operation(MenuOpen), path)) return false;
    TellRecovered(app);
    return true;
}

bool MenuOpenClip(Application& app, const Text& path) {
    return Run(app, Operation(MenuOpenClip), path);
}

bool MenuDelete(Application& app, const Text& path) {
    return Run(app, Operation(MenuDelete), path);
}

bool MenuSaveSelAs(Application& app, const Text& path) {
    return Run(app, Operation(MenuSaveSelAs), path);
}

}  // namespace orma
