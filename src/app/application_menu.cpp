#include "app/application_menu.h"

#include "app/options.h"
#include "app/start_up.h"
#include "project/project_menu.h"
#include "project/save_selection.h"

namespace orma {
namespace {

/// An operation of the project behind one of the menus.
using Operation = bool (*)(Project& project, const Text& path, bool busy);

/// Runs it and brings what stands beside the project in line, also after a failure: a refused file
/// may have left another path, and a recording may be rewritten but its project not saved.
bool Run(Application& app, Operation operation, const Text& path) {
    const bool busy = IsBusy(app);
    const bool done = operation(app.project, path, busy);
    if (busy) return done;
    FollowProject(app);
    // A recording that was opened or rewritten has its cursor there; nothing else moves the player.
    if (app.recording.cursor == 0) app.transport.MoveTo(0);
    return done;
}

}  // namespace

bool IsBusy(const Application& app) {
    return app.transport.IsCapturing() || app.player.IsPlaying();
}

bool MenuNewProject(Application& app, const Text& path) {
    app.project.SetOptions(ProjectOptionsOf(app.settings));
    return Run(app, MenuNewProject, path);
}

bool MenuOpen(Application& app, const Text& path) {
    if (!Run(app, MenuOpen, path)) return false;
    TellRecovered(app);
    return true;
}

bool MenuOpenClip(Application& app, const Text& path) {
    return Run(app, MenuOpenClip, path);
}

bool MenuDelete(Application& app, const Text& path) {
    return Run(app, MenuDelete, path);
}

bool MenuSaveSelAs(Application& app, const Text& path) {
    return Run(app, MenuSaveSelAs, path);
}

}  // namespace orma
