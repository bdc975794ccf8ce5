#include "project/edge_nudge.h"

#include "project/cuts.h"
#include "project/selection.h"

namespace orma {
namespace {

/// One period on or back, within [lowest, highest].
std::uint32_t Nudged(std::uint32_t from, bool forward, std::uint32_t lowest,
                     std::uint32_t highest) {
    if (forward) return from < highest ? from + 1 : from;
    return from > lowest ? from - 1 : from;
}

bool IsOfCut(const EdgeMove& move) {
    return move.edge == Edge::kCutBegin || move.edge == Edge::kCutEnd;
}

bool StoreSelection(Project& project) {
    const std::int32_t edited = project.EditedClip();
    if (edited < 0) return true;
    ClipEntry& clip = project.Clips().At(edited);
    const PeriodRange before{clip.begin, clip.end};
    clip.begin = project.Recording().selectionStart;
    clip.end = project.Recording().selectionEnd;
    if (project.SaveProjectFile()) return true;
    clip.begin = before.begin;
    clip.end = before.end;
    return false;
}

}  // namespace

std::optional<EdgeMove> NudgeAtCursor(const CurrentRecording& recording, bool forward) {
    const std::uint32_t cursor = recording.cursor;
    if (const RemovedRange* cut = recording.CurrentCut()) {
        const bool empty = cut->begin == cut->end;
        if (cursor == cut->begin && !(empty && forward))
            return EdgeMove{Edge::kCutBegin, cursor, Nudged(cursor, forward, 0, cut->end)};
        if (cursor == cut->end)
            return EdgeMove{Edge::kCutEnd, cursor,
                            Nudged(cursor, forward, cut->begin, recording.length)};
    }
    const std::uint32_t start = recording.selectionStart;
    const std::uint32_t end = recording.selectionEnd;
    if (!recording.HasSelection()) return std::nullopt;
    if (cursor == start)
        return EdgeMove{Edge::kSelectionStart, cursor, Nudged(cursor, forward, 0, end - 1)};
    if (cursor == end)
        return EdgeMove{Edge::kSelectionEnd, cursor,
                        Nudged(cursor, forward, start + 1, recording.length)};
    return std::nullopt;
}

bool MoveEdge(Project& project, const EdgeMove& move) {
    CurrentRecording& recording = project.Recording();
    if (IsOfCut(move)) {
        const auto edge = move.edge == Edge::kCutBegin ? &RemovedRange::begin : &RemovedRange::end;
        if (!MoveCutEdge(project, edge, move.to)) return false;
        recording.cursor = move.to;
        return true;
    }
    std::uint32_t& edge =
        move.edge == Edge::kSelectionStart ? recording.selectionStart : recording.selectionEnd;
    edge = move.to;
    if (!StoreSelection(project)) {
        edge = move.from;
        return false;
    }
    recording.cursor = move.to;
    RefreshClipLength(project);
    return true;
}

}  // namespace orma
