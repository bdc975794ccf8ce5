#include "shell/file_commands.h"

#include <algorithm>

#include "app/application_menu.h"
#include "app/start_up.h"
#include "base/path.h"
#include "base/small_letter.h"
#include "shell/shell.h"

namespace orma {
namespace {

/// What opens a file of that name, null for one that is not ours.
FileOperation OpeningOf(const Text& path) {
    if (IsRecordingName(path)) return MenuOpenClip;
    const Text extension = SplitPath(path).extension;
    return std::ranges::equal(extension, TextView(u".opr"), {}, SmallLetter) ? MenuOpen : nullptr;
}

}  // namespace

bool RunOnPath(Shell& shell, const Text& path, FileOperation operation) {
    shell.CloseTextEditor();
    shell.ShowWaitCursor(true);
    const bool done = operation(shell.App(), path);
    shell.ShowWaitCursor(false);
    shell.NoteProject();
    shell.Refresh();
    return done;
}

bool IsOpenable(const Text& path) {
    return OpeningOf(path) != nullptr;
}

void OpenFile(Shell& shell, const Text& path) {
    const FileOperation operation = OpeningOf(path);
    if (operation == nullptr || !shell.IsOpen()) return;
    if (shell.CurrentScreen() == ScreenIndex::kProgress) return;
    if (IsBusy(shell.App()))
        (void)operation(shell.App(), path);  // says that it refuses
    else
        (void)RunOnPath(shell, path, operation);
    shell.UpdateMenus();
}

void OpenRecentProject(Shell& shell, std::size_t place) {
    Application& app = shell.App();
    if (place >= app.recentProjects.Paths().size()) return;
    const Text path = app.recentProjects.Paths()[place];  // the list changes meanwhile
    if (!IsBusy(app) && !app.ports.storage.Exists(path)) {
        app.recentProjects.Remove(path);
        app.report.ShowError(u"This project is not there any more:\n" + path);
        return;
    }
    OpenFile(shell, path);
}

}  // namespace orma
