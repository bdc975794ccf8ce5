#include "project/cuts.h"

#include <algorithm>

#include "project/project.h"
#include "project/selection.h"
#include "project/sheet_change.h"

namespace orma {
namespace {

bool AddCutAndMoveCursor(Project& project, const RemovedRange& range, std::uint32_t cursor) {
    CurrentRecording& recording = project.Recording();
    if (!AddCut(project, range.begin, range.end)) return false;
    recording.currentCut = -1;
    recording.cursor = cursor;
    return true;
}

}  // namespace

bool MoveCutEdge(Project& project, std::uint32_t RemovedRange::*edge, std::uint32_t position) {
    CurrentRecording& recording = project.Recording();
    RemovedRange* const cut = recording.CurrentCut();
    if (cut == nullptr) return false;
    const RemovedRange before = *cut;
    SheetChange change(project.Readers().files, recording);
    cut->*edge = position;
    if (!change.Commit()) return false;
    if (before.begin != before.end)
        recording.undo = {.kind = edge == &RemovedRange::begin ? UndoRecord::kCutBeginChanged
                                                               : UndoRecord::kCutEndChanged,
                          .index = static_cast<std::size_t>(recording.currentCut),
                          .value = before.*edge,
                          .cut = {}};
    RefreshClipLength(project);
    return true;
}

std::optional<std::size_t> AddCut(Project& project, std::uint32_t begin, std::uint32_t end) {
    const FileServices services = project.Readers().files;
    CurrentRecording& recording = project.Recording();
    std::vector<RemovedRange>& cuts = recording.sheet.cuts;
    if (cuts.size() >= LevelSheet::kMaxCuts) {
        services.report.ShowError(u"There is no room for more cuts.");
        return std::nullopt;
    }
    const auto place =
        std::ranges::find_if(cuts, [end](const RemovedRange& cut) { return cut.begin > end; });
    const auto index = static_cast<std::size_t>(place - cuts.begin());
    SheetChange change(services, recording);
    cuts.insert(place, {begin, end, 0});
    if (!change.Commit()) return std::nullopt;
    // What stood from here on has moved up.
    if (recording.currentCut >= 0 && static_cast<std::size_t>(recording.currentCut) >= index)
        ++recording.currentCut;
    recording.undo = {.kind = UndoRecord::kCutMade, .index = index, .cut = {}};
    RefreshClipLength(project);
    return index;
}

bool DeleteCut(Project& project, std::size_t index) {
    CurrentRecording& recording = project.Recording();
    std::vector<RemovedRange>& cuts = recording.sheet.cuts;
    if (index >= cuts.size()) return false;
    const RemovedRange cut = cuts[index];
    SheetChange change(project.Readers().files, recording);
    cuts.erase(cuts.begin() + static_cast<std::ptrdiff_t>(index));
    if (!change.Commit()) return false;
    recording.undo = {.kind = UndoRecord::kCutDeleted, .index = index, .cut = cut};
    recording.currentCut = -1;
    RefreshClipLength(project);
    return true;
}

bool CutBegin(Project& project, bool oneSecond) {
    const CurrentRecording& recording = project.Recording();
    if (const RemovedRange* cut = recording.CurrentCut()) {
        if (recording.cursor >= cut->end) return true;
        return MoveCutEdge(project, &RemovedRange::begin, recording.cursor);
    }
    const std::uint32_t second = oneSecond ? project.Readers().audio.PeriodsPerSecond() : 0;
    const std::uint32_t begin = std::min(recording.cursor, recording.length);
    const std::uint32_t end = std::min(begin + second, recording.length);
    return AddCutAndMoveCursor(project, {begin, end}, end);
}

bool CutEnd(Project& project, bool oneSecond) {
    const CurrentRecording& recording = project.Recording();
    if (const RemovedRange* cut = recording.CurrentCut()) {
        if (recording.cursor <= cut->begin) return true;
        return MoveCutEdge(project, &RemovedRange::end, recording.cursor);
    }
    const std::uint32_t second = oneSecond ? project.Readers().audio.PeriodsPerSecond() : 0;
    const std::uint32_t begin = recording.cursor - std::min(second, recording.cursor);
    return AddCutAndMoveCursor(project, {begin, recording.cursor}, begin);
}

}  // namespace orma
