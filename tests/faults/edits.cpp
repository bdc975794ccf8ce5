#include "edits.h"

#include "project/clip_operations.h"
#include "project/cuts.h"
#include "project/marks.h"
#include "project/selection.h"
#include "project/undo.h"

namespace orma::test {
namespace {

EditOperation AtCursor(std::uint32_t cursor, bool (*operation)(Project& project)) {
    return [cursor, operation](Project& project) {
        project.Recording().cursor = cursor;
        return operation(project);
    };
}

}  // namespace

ListState ListOf(const Project& project) {
    ListState list{{}, project.ProjectText()};
    for (std::int32_t i = 0; i < project.Clips().Count(); ++i) {
        const ClipEntry& clip = project.Clips().At(i);
        list.first.emplace_back(clip.name, clip.title, clip.begin, clip.end);
    }
    return list;
}

EditAccount Edit(Application& app, FakeBoxes& boxes) {
    Project& project = app.project;
    EditAccount account;
    account.lists.push_back(ListOf(project));
    const std::int32_t newest = app.clips.Count() - 1;
    if (newest < 1 || project.EditedClip() != newest) return account;

    const auto isDone = [&](const char* what, const EditOperation& change) {
        const std::size_t before = boxes.shown.size();
        const bool done = change(project);
        if (!done && boxes.shown.size() == before) account.silent.emplace_back(what);
        if (done) ++account.done;
        return done;
    };
    // A change of marks or cuts, which is in the level file when it is said to be done.
    const auto changeSheet = [&](const char* what, const EditOperation& change) {
        if (!isDone(what, change)) return;
        const CurrentRecording& recording = project.Recording();
        account.sheets[recording.name] = {recording.sheet.marks, recording.sheet.cuts};
    };
    // A change of the list, which is in the project file when it is said to be done, and stays for
    // the next save when it is not.
    const auto changeList = [&](const char* what, const EditOperation& change) {
        if (isDone(what, change)) account.lists.clear();
        account.lists.push_back(ListOf(project));
    };
    const auto addCut = [](std::uint32_t begin, std::uint32_t end) {
        return [=](Project& of) { return AddCut(of, begin, end).has_value(); };
    };

    changeSheet("mark", AtCursor(7, ToggleMark));
    changeSheet("cut", addCut(10, 14));
    changeSheet("second cut", addCut(16, 17));
    if (CanUndo(project)) changeSheet("undo", UndoEdit);
    changeSheet("unmark", AtCursor(4, ToggleMark));
    changeList("crop begin", AtCursor(2, CropBegin));
    changeList("crop end", AtCursor(21, CropEnd));
    changeList("title", [=](Project& of) { return RenameClip(of, newest, u"Pilot", false); });
    changeList("copy", [](Project& of) { return CopyToClipEditor(of, u"Answer"); });
    changeList("move", MoveClipUp);
    changeList("text", [](Project& of) {
        of.SetProjectText(u"Harbour, second day");
        return of.SaveProject();
    });
    (void)isDone("choose", [](Project& of) { return of.SelectClip(0); });
    changeSheet("mark of old", AtCursor(20, ToggleMark));
    return account;
}

}  // namespace orma::test
