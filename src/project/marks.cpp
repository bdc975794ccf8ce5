#include "project/marks.h"

#include <algorithm>

#include "project/selection.h"
#include "project/sheet_change.h"

namespace orma {

std::size_t FindMark(const LevelSheet& sheet, std::uint32_t position) {
    const auto found = std::ranges::find(sheet.marks, position);
    return static_cast<std::size_t>(found - sheet.marks.begin());
}

bool InsertMark(FileServices services, CurrentRecording& recording, std::uint32_t position) {
    std::vector<std::uint32_t>& marks = recording.sheet.marks;
    if (marks.size() >= LevelSheet::kMaxMarks) {
        services.report.ShowError(u"There is no room for more marks.");
        return false;
    }
    SheetChange change(services, recording);
    InsertSorted(marks, position);
    return change.Commit();
}

bool DeleteMark(FileServices services, CurrentRecording& recording, std::uint32_t position) {
    std::vector<std::uint32_t>& marks = recording.sheet.marks;
    const std::size_t index = FindMark(recording.sheet, position);
    if (index == marks.size()) return true;
    SheetChange change(services, recording);
    marks.erase(marks.begin() + static_cast<std::ptrdiff_t>(index));
    if (!change.Commit()) return false;
    recording.undo = {.kind = UndoRecord::kMarkDeleted, .value = position, .cut = {}};
    return true;
}

bool ToggleMark(FileServices services, CurrentRecording& recording) {
    const bool marked = FindMark(recording.sheet, recording.cursor) < recording.sheet.marks.size();
    return marked ? DeleteMark(services, recording, recording.cursor)
                  : InsertMark(services, recording, recording.cursor);
}

bool ToggleMark(Project& project) {
    return EnsureLevels(project) && ToggleMark(project.Readers().files, project.Recording());
}

}  // namespace orma
