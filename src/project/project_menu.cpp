#include "project/project_menu.h"

namespace orma {
namespace {

bool RefuseBusy(Project& project, const Text& operation, bool busy) {
    if (busy) project.Readers().files.report.ShowError(operation);
    return busy;
}

/// A project whose card is gone cannot be saved (reported), and must not hold the user.
void LeaveProject(Project& project) {
    (void)project.SaveProject();
}

}  // namespace

bool MenuNewProject(Project& project, const Text& path, bool busy) {
    if (RefuseBusy(project, u"MenuNewProject", busy)) return false;
    LeaveProject(project);
    const PathParts parts = SplitPath(path);
    project.SetPath(parts.folder, parts.name);
    project.NewProject();
    return project.SaveProject();
}

bool MenuOpen(Project& project, const Text& path, bool busy) {
    if (RefuseBusy(project, u"MenuOpen", busy)) return false;
    LeaveProject(project);
    const PathParts parts = SplitPath(path);
    project.SetPath(parts.folder, parts.name);
    if (!project.LoadProject()) return false;
    project.RecoverTakes();
    return true;
}

bool MenuOpenClip(Project& project, const Text& path, bool busy) {
    return !RefuseBusy(project, u"MenuOpen", busy) && project.OpenRecording(path);
}

bool MenuDelete(Project& project, const Text& path, bool busy) {
    if (RefuseBusy(project, u"MenuDelete", busy)) return false;
    const BoxAnswer answer = project.Readers().files.report.Boxes().Show(
        {.text = u"Are you shure you want to delete " + path + u" ?",
         .title = u"Warning",
         .icon = BoxIcon::kWarning,
         .buttons = BoxButtons::kOkCancel,
         .secondIsDefault = true});
    return answer == BoxAnswer::kOk && project.DeletePath(path);
}

}  // namespace orma
