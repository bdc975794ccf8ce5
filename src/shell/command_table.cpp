#include "shell/command_table.h"

#include <algorithm>
#include <iterator>

#include "app/application_menu.h"
#include "base/path.h"
#include "base/trace.h"
#include "project/clip_operations.h"
#include "project/cuts.h"
#include "project/marks.h"
#include "project/save_selection.h"
#include "project/selection.h"
#include "shell/publish_note.h"
#include "shell/shell.h"

namespace orma {
namespace {

template <ScreenIndex kIndex>
void Select(Shell& shell, std::uint32_t) {
    shell.SelectScreen(kIndex);
}

void EditText(Shell& shell, std::uint32_t) {
    shell.OpenTextEditor();
}

void ShowShortcuts(Shell& shell, std::uint32_t) {
    shell.UserDialogs().ShowShortcuts(shell.Shortcuts());
}

void Exit(Shell& shell, std::uint32_t) {
    shell.OnCloseRequest();
}

void TraceOnly(Shell&, std::uint32_t) {
    Trace("command %u", static_cast<unsigned>(Command::kNone));
}

void ListView(Shell& shell, std::uint32_t notification) {
    if (shell.CurrentScreen() != ScreenIndex::kClipEditor) return;
    shell.Screen(ScreenIndex::kClipEditor)->OnListNotification(notification);
}

// Files. While something is recorded or played no dialog is shown: the operation itself refuses.

using Question = std::optional<Text> (Dialogs::*)(const Text& proposed);

/// True when the user answered and the operation was done.
bool RunOnFile(Shell& shell, Question question, const Text& proposed, FileOperation operation,
               bool refused = false) {
    Application& app = shell.App();
    if (refused || IsBusy(app)) {
        (void)operation(app, {});
        return false;
    }
    shell.CloseTextEditor();
    const std::optional<Text> path = (shell.UserDialogs().*question)(proposed);
    return path && RunOnPath(shell, *path, operation);
}

void OpenProject(Shell& shell, std::uint32_t) {
    RunOnFile(shell, &Dialogs::OpenProject, shell.App().project.ProjectFilePath(), MenuOpen);
}

/// The folder, or the user's documents in place of the program's own folder where that is a hidden
/// one: nobody finds there again what he has saved.
Text VisibleFolder(Shell& shell, const Text& folder) {
    const bool hidden = folder == shell.App().programFolder && folder.find(u"/.") != Text::npos;
    return hidden ? shell.UserDialogs().Documents() : folder;
}

/// In the projects' folder. Without one in the settings, which then have the program's, beside the
/// present project.
void NewProject(Shell& shell, std::uint32_t) {
    const Application& app = shell.App();
    const Text set = AsFolder(app.settings.ProjectsFolder);
    const Text folder = VisibleFolder(shell, set == app.programFolder ? app.project.Folder() : set);
    const Text proposed = folder + app.project.Name() + u".opr";
    if (RunOnFile(shell, &Dialogs::NewProject, proposed, MenuNewProject))
        shell.SelectScreen(ScreenIndex::kRecorder);
}

void OpenClip(Shell& shell, std::uint32_t) {
    RunOnFile(shell, &Dialogs::OpenClip, shell.App().recording.audioPath, MenuOpenClip);
}

void Delete(Shell& shell, std::uint32_t) {
    RunOnFile(shell, &Dialogs::Delete, shell.App().project.Folder(), MenuDelete);
}

void SaveSelection(Shell& shell, std::uint32_t) {
    const Application& app = shell.App();
    const PathParts parts = SplitPath(ProposedSelectionPath(app.project));
    const Text proposed = VisibleFolder(shell, parts.folder) + parts.name + parts.extension;
    RunOnFile(shell, &Dialogs::SaveSelection, proposed, MenuSaveSelAs,
              !app.recording.HasSelection());
}

// Editing.

template <bool (*kOperation)(Project& project)>
void Edit(Shell& shell, std::uint32_t) {
    if (shell.App().transport.Edit(kOperation)) shell.Refresh();
}

/// A new cut is the current one once the cursor went to it, also when it stood there already: the
/// next "Cut end" is that of an empty cut at the cursor.
template <bool (*kOperation)(Project& project, bool oneSecond)>
void Cut(Shell& shell, std::uint32_t) {
    Application& app = shell.App();
    bool done = false;
    const auto cut = [&](Project& project) {
        done = EnsureLevels(project) && kOperation(project, app.settings.OneSecondCut != 0);
        return done;
    };
    if (!app.transport.Edit(cut)) return;
    if (done && app.recording.currentCut < 0)
        app.transport.MoveTo(static_cast<std::int32_t>(app.recording.cursor));
    shell.Refresh();
}

void CopyToClips(Shell& shell, std::uint32_t) {
    Application& app = shell.App();
    if (IsBusy(app)) return;
    const CurrentRecording& recording = app.recording;
    const bool odd = !recording.HasSelection() && recording.selectionStart != 0;
    if (recording.length == 0 || odd) {
        (void)CopyToClipEditor(app.project, {});  // says so
        return;
    }
    const auto title = shell.UserDialogs().ClipName(ProposedClipTitle(app.project));
    if (!title) return;
    (void)CopyToClipEditor(app.project, *title);  // reported
    shell.Refresh();
}

void InputOptions(Shell& shell, std::uint32_t) {
    if (IsBusy(shell.App())) return;
    shell.UserDialogs().InputOptions();
    shell.Refresh();
}

void Record(Shell& shell, std::uint32_t) {
    const Application& app = shell.App();
    const bool ready = shell.Screen(ScreenIndex::kRecorder) != nullptr && !IsBusy(app) &&
                       app.transport.State() == TransportState::kStopped;
    if (ready) shell.App().transport.Record(true);
}

// Publishing. The job runs to its end inside the call and tells the user what went wrong.

using PublishOperation = PublishOutcome (PublishJob::*)(bool busy);

template <PublishOperation kOperation>
void Publish(Shell& shell, std::uint32_t) {
    Application& app = shell.App();
    const bool busy = IsBusy(app);
    if (!busy) shell.CloseTextEditor();  // its text goes along
    PublishJob job(app.Publishing(shell.Publishing()));
    const PublishOutcome outcome = (job.*kOperation)(busy);
    if (!busy) shell.Refresh();
    if (outcome != PublishOutcome::kPublished) return;
    if (const auto note = NoteOf(job, app)) shell.ShowNote(*note);
}

/// A recording in which nothing is selected is meant whole, as a clip without an end is.
template <PublishOperation kOperation>
void PublishClip(Shell& shell, std::uint32_t notification) {
    CurrentRecording& recording = shell.App().recording;
    const bool whole = !IsBusy(shell.App()) && recording.length > 0 &&
                       recording.selectionStart == 0 && recording.selectionEnd == 0;
    if (whole) recording.selectionEnd = recording.length;
    Publish<kOperation>(shell, notification);
    if (!whole) return;
    recording.selectionEnd = 0;
    shell.Refresh();
}

void PublishImage(Shell& shell, std::uint32_t) {
    if (!IsBusy(shell.App())) Publish<&PublishJob::MenuPublishImage>(shell, 0);
}

struct Row {
    Command command;
    CommandAction action;
};

constexpr Row kTable[] = {
    {Command::kRecorder, Select<ScreenIndex::kRecorder>},
    {Command::kEditor, Select<ScreenIndex::kEditor>},
    {Command::kClipEditor, Select<ScreenIndex::kClipEditor>},
    {Command::kEditText, EditText},
    {Command::kAbout, Select<ScreenIndex::kAbout>},
    {Command::kPublishClip, PublishClip<&PublishJob::MenuPublishClip>},
    {Command::kExit, Exit},
    {Command::kOpenProject, OpenProject},
    {Command::kNewProject, NewProject},
    {Command::kDelete, Delete},
    {Command::kListView, ListView},
    {Command::kCropBegin, Edit<CropBegin>},
    {Command::kCropEnd, Edit<CropEnd>},
    {Command::kSaveSelection, SaveSelection},
    {Command::kPublishClipList, Publish<&PublishJob::MenuPublishCliplist>},
    {Command::kOpenClip, OpenClip},
    {Command::kCutBegin, Cut<CutBegin>},
    {Command::kCutEnd, Cut<CutEnd>},
    {Command::kMark, Edit<ToggleMark>},
    {Command::kNone, TraceOnly},
    {Command::kCopyToClipEditor, CopyToClips},
    {Command::kInputOptions, InputOptions},
    {Command::kClipToFile, PublishClip<&PublishJob::MenuPublishClipToFile>},
    {Command::kClipListToFile, Publish<&PublishJob::MenuPublishCliplistToFile>},
    {Command::kImage, PublishImage},
    {Command::kRecord, Record},
    {Command::kFastClip, PublishClip<&PublishJob::MenuPublishFastClip>},
    {Command::kFastClipList, Publish<&PublishJob::MenuPublishFastCliplist>},
    {Command::kShortcuts, ShowShortcuts},
};

}  // namespace

CommandAction FindAction(Command command) {
    const auto* const row = std::ranges::find(kTable, command, &Row::command);
    return row != std::end(kTable) ? row->action : nullptr;
}

}  // namespace orma
