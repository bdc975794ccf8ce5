#include "shell/window_start.h"

#include "app/start_up.h"
#include "shell/background_pages.h"
#include "shell/window_size.h"

namespace orma {
namespace {

bool NamesProject(const Text& commandLine) {
    return !commandLine.empty() && commandLine.front() != u' ';
}

/// True when this instance may go on. Two that record into one project would be at each other's
/// takes, so one that does not end stays the only one.
bool BecomeTheOnlyOne(RunningInstance& running, bool takeOver) {
    if (!running.IsOpen()) return true;
    if (takeOver && running.Close(kTakeOverPatienceMs)) return true;
    running.Raise();
    return false;
}

}  // namespace

bool StartWindow(const WindowParts& parts, const Text& commandLine) {
    Application& app = parts.app;
    MainWindow& window = parts.window;
    window.ShowWaitCursor(true);
    parts.running.CloseSetup();
    if (!BecomeTheOnlyOne(parts.running, NamesProject(commandLine))) return false;
    LoadSettings(app);
    const Pages background = ChooseBackgroundPages(window.Display(), app.settings);
    (void)OpenProjectAtStart(app, commandLine);  // reported; the program starts without it
    const WindowSize size = ReadWindowSize(app.ports.storage, app.programFolder + u"size.txt");
    if (!window.Create(u"Orma Edit", size.client)) return false;
    parts.running.Open({.raise = [&window] { window.Raise(); },
                        .close = [&shell = parts.shell] { shell.OnCloseRequest(); }});
    parts.loadSkin({size.client, size.scale, background});
    parts.shell.Open(size.client);
    window.ShowWaitCursor(false);
    window.Show();
    window.Raise();
    return true;
}

bool EndWindow(const WindowParts& parts, Patience& patience) {
    Application& app = parts.app;
    parts.shell.CloseTextEditor();  // its text belongs into the project
    const bool projectSaved = app.project.SaveProject();
    parts.shell.Close();
    const bool stateSaved = SaveUserState(app);
    if (app.liveUploads && !app.liveUploads->Wait(patience)) app.liveUploads->GiveUp();
    return projectSaved && stateSaved;
}

}  // namespace orma
