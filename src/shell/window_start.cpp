#include "shell/window_start.h"

#include "app/start_up.h"
#include "shell/background_pages.h"
#include "shell/window_size.h"

namespace orma {
namespace {

/// True when this instance may go on. Two that record into one project would be at each other's
/// takes, so one that does not end stays the only one, as does one that started just before.
bool BecomeTheOnlyOne(const WindowParts& parts, bool takeOver) {
    RunningInstance& running = parts.running;
    const bool isFree = !running.IsOpen() || (takeOver && running.Close(kTakeOverPatienceMs));
    if (isFree && running.Open({.raise = [&window = parts.window] { window.Raise(); },
                                .close = [&shell = parts.shell] { shell.OnCloseRequest(); }}))
        return true;
    running.Raise();
    return false;
}

}  // namespace

bool StartWindow(const WindowParts& parts, const Text& commandLine) {
    Application& app = parts.app;
    MainWindow& window = parts.window;
    window.ShowWaitCursor(true);
    parts.running.CloseSetup();
    if (!BecomeTheOnlyOne(parts, NamesFile(commandLine))) return false;
    LoadSettings(app);
    const Pages background = ChooseBackgroundPages(window.Display(), app.settings);
    (void)OpenProjectAtStart(app, commandLine);  // reported; the program starts without it
    const Size client = ReadWindowSize(app.ports.storage, app.programFolder + u"size.txt");
    if (!window.Create(u"Orma Edit", client)) return false;
    parts.loadSkin({client, background});
    parts.shell.Open(client);
    window.ShowWaitCursor(false);
    window.Show();
    window.Raise();
    app.ports.loop.Post([&boxes = parts.boxes] { boxes.Release(); });
    return true;
}

bool EndWindow(const WindowParts& parts, Patience& patience) {
    Application& app = parts.app;
    parts.shell.CloseTextEditor();  // its text belongs into the project
    const bool projectSaved = app.project.SaveProject();
    parts.shell.Close();
    const bool stateSaved = SaveUserState(app);
    parts.running.Leave();
    if (app.liveUploads) (void)app.liveUploads->Finish(patience);
    return projectSaved && stateSaved;
}

}  // namespace orma
