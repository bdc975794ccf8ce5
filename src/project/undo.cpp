#include "project/undo.h"

#include <algorithm>

#include "project/cuts.h"
#include "project/marks.h"
#include "project/project.h"
#include "project/selection.h"
#include "project/sheet_change.h"

namespace orma {
namespace {

/// Puts a deleted cut back where it stood.
bool RestoreCut(FileServices files, CurrentRecording& recording, const UndoRecord& undo) {
    std::vector<RemovedRange>& cuts = recording.sheet.cuts;
    if (cuts.size() >= LevelSheet::kMaxCuts) {
        files.report.ShowError(u"There is no room for more cuts.");
        return false;
    }
    SheetChange change(files, recording);
    const std::size_t index = std::min(undo.index, cuts.size());
    cuts.insert(cuts.begin() + static_cast<std::ptrdiff_t>(index), undo.cut);
    if (!change.Commit()) return false;
    recording.currentCut = -1;
    return true;
}

/// Exchanges the edge with the position in the record, so that the other direction is the same.
bool SwapEdge(FileServices files, CurrentRecording& recording, UndoRecord& undo) {
    if (undo.index >= recording.sheet.cuts.size()) return false;
    SheetChange change(files, recording);
    RemovedRange& cut = recording.sheet.cuts[undo.index];
    std::uint32_t& edge = undo.kind == UndoRecord::kCutBeginChanged ? cut.begin : cut.end;
    const std::uint32_t before = edge;
    edge = undo.value;
    if (!change.Commit()) return false;
    undo.value = before;
    return true;
}

bool DeleteCutAgain(Project& project, const UndoRecord& undo) {
    const std::vector<RemovedRange>& cuts = project.Recording().sheet.cuts;
    const auto found = std::ranges::find(cuts, undo.cut);
    if (found == cuts.end()) return false;
    return DeleteCut(project, static_cast<std::size_t>(found - cuts.begin()));
}

bool IsAt(const Project& project, std::uint32_t step) {
    const UndoRecord& undo = project.Recording().undo;
    return undo.kind < UndoRecord::kNothing && undo.step == step;
}

}  // namespace

bool CanUndo(const Project& project) {
    return IsAt(project, 0);
}

bool CanRedo(const Project& project) {
    return IsAt(project, 1);
}

bool UndoEdit(Project& project) {
    if (!CanUndo(project)) return false;
    const FileServices files = project.Readers().files;
    CurrentRecording& recording = project.Recording();
    UndoRecord undo = recording.undo;
    // Its deletion makes a record of its own: to take that back is to cut again.
    if (undo.kind == UndoRecord::kCutMade) return DeleteCut(project, undo.index);
    bool done = false;
    if (undo.kind == UndoRecord::kMarkDeleted)
        done = InsertMark(files, recording, undo.value);
    else if (undo.kind == UndoRecord::kCutDeleted)
        done = RestoreCut(files, recording, undo);
    else
        done = SwapEdge(files, recording, undo);
    if (!done) return false;
    undo.step = 1;
    recording.undo = undo;
    RefreshClipLength(project);
    return true;
}

bool RedoEdit(Project& project) {
    if (!CanRedo(project)) return false;
    const FileServices files = project.Readers().files;
    CurrentRecording& recording = project.Recording();
    UndoRecord undo = recording.undo;
    bool done = false;
    if (undo.kind == UndoRecord::kMarkDeleted)
        done = FindMark(recording.sheet, undo.value) < recording.sheet.marks.size() &&
               DeleteMark(files, recording, undo.value);
    else if (undo.kind == UndoRecord::kCutDeleted)
        done = DeleteCutAgain(project, undo);
    else
        done = SwapEdge(files, recording, undo);
    if (!done) return false;
    if (undo.kind >= UndoRecord::kCutBeginChanged) {
        undo.step = 0;
        recording.undo = undo;
    }  // else the deletion made its own record
    RefreshClipLength(project);
    return true;
}

}  // namespace orma
