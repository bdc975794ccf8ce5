#include "shell/file_commands.h"

#include <algorithm>

#include "app/application_menu.h"
#include "base/path.h"
#include "shell/shell.h"

namespace orma {
namespace {

/// What opens a file of that name, null for one that is not ours.
FileOperation OpeningOf(const Text& path) {
    Text extension = SplitPath(path).extension;
    std::ranges::transform(extension, extension.begin(), [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
    });
    if (extension == u".opr") return MenuOpen;
    return extension == u".wav" || extension == u".mp2" ? MenuOpenClip : nullptr;
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
