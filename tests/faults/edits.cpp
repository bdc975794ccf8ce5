#include "edits.h"

#include "project/clip_operations.h"
#include "project/cuts.h"
#include "project/marks.h"
#include "project/selection.h"
#include "project/undo.h"

namespace orma::test {
namespace {

class Editor {
  public:
    Editor(Project& project, FakeBoxes& boxes) : project_(project), boxes_(boxes) {
        account_.lists.push_back(ListOf(project_));
    }

    /// A change of marks or cuts, which is in the level file when it is said to be done.
    void ChangeSheet(const char* what, const EditOperation& change) {
        if (!Do(what, change)) return;
        const CurrentRecording& recording = project_.Recording();
        account_.sheets[recording.name] = {recording.sheet.marks, recording.sheet.cuts};
    }

    /// A change of the list, which is in the project file when it is said to be done, and stays for
    /// the next save when it is not.
    void ChangeList(const char* what, const EditOperation& change) {
        if (Do(what, change)) account_.lists.clear();
        account_.lists.push_back(ListOf(project_));
    }

    /// Makes a clip current.
    void Choose(std::int32_t index) {
        (void)Do("choose", [index](Project& project) { return project.SelectClip(index); });
    }

    [[nodiscard]] EditAccount Account() { return std::move(account_); }

  private:
    bool Do(const char* what, const EditOperation& change) {
        const std::size_t before = boxes_.shown.size();
        const bool done = change(project_);
        if (!done && boxes_.shown.size() == before) account_.silent.emplace_back(what);
        if (done) ++account_.done;
        return done;
    }

    Project& project_;
    FakeBoxes& boxes_;
    EditAccount account_;
};

EditOperation AtCursor(std::uint32_t cursor, bool (*operation)(Project& project)) {
    return [cursor, operation](Project& project) {
        project.Recording().cursor = cursor;
        return operation(project);
    };
}

}  // namespace

ListState ListOf(const Project& project) {
    ListState list{.clips = {}, .text = project.ProjectText()};
    for (std::int32_t i = 0; i < project.Clips().Count(); ++i) {
        const ClipEntry& clip = project.Clips().At(i);
        list.clips.push_back({clip.name, clip.title, clip.begin, clip.end});
    }
    return list;
}

EditAccount Edit(Application& app, FakeBoxes& boxes) {
    Editor editor(app.project, boxes);
    const std::int32_t newest = app.clips.Count() - 1;
    if (newest < 1 || app.project.EditedClip() != newest) return editor.Account();

    editor.ChangeSheet("mark", AtCursor(7, ToggleMark));
    editor.ChangeSheet("cut", [](Project& project) { return AddCut(project, 10, 14).has_value(); });
    editor.ChangeSheet("second cut",
                       [](Project& project) { return AddCut(project, 16, 17).has_value(); });
    if (CanUndo(app.project)) editor.ChangeSheet("undo", UndoEdit);
    editor.ChangeSheet("unmark", AtCursor(4, ToggleMark));
    editor.ChangeList("crop begin", AtCursor(2, CropBegin));
    editor.ChangeList("crop end", AtCursor(21, CropEnd));
    editor.ChangeList("title", [newest](Project& project) {
        return RenameClip(project, newest, u"Pilot", false);
    });
    editor.ChangeList("copy",
                      [](Project& project) { return CopyToClipEditor(project, u"Answer"); });
    editor.ChangeList("move", MoveClipUp);
    editor.ChangeList("text", [](Project& project) {
        project.SetProjectText(u"Harbour, second day");
        return project.SaveProject();
    });
    editor.Choose(0);
    editor.ChangeSheet("mark of old", AtCursor(20, ToggleMark));
    return editor.Account();
}

}  // namespace orma::test
