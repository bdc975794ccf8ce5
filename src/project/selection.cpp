#include "project/selection.h"

#include <algorithm>

#include "audio/files/take_repair.h"
#include "audio/files/vu_file.h"

namespace orma {
namespace {

bool TakeOverSelection(Project& project) {
    const std::int32_t edited = project.EditedClip();
    if (edited < 0) return true;
    ClipEntry& clip = project.Clips().At(edited);
    clip.begin = project.Recording().selectionStart;
    clip.end = project.Recording().selectionEnd;
    const bool saved = project.SaveProject();
    RefreshClipLength(project);
    return saved;
}

}  // namespace

std::uint32_t PlayingLength(const CurrentRecording& recording) {
    const bool selected = recording.HasSelection();
    return NetLength(recording.sheet.cuts, selected ? recording.selectionStart : 0,
                     selected ? recording.selectionEnd : recording.length);
}

void RefreshClipLength(Project& project) {
    if (ClipEntry* clip = project.Clips().Current()) project.CheckClip(*clip);
}

bool CropBegin(Project& project) {
    CurrentRecording& recording = project.Recording();
    recording.selectionStart = recording.cursor;
    if (recording.selectionStart > recording.selectionEnd)
        recording.selectionEnd = recording.length;
    return TakeOverSelection(project);
}

bool CropEnd(Project& project) {
    CurrentRecording& recording = project.Recording();
    recording.selectionEnd = recording.cursor;
    if (recording.selectionEnd < recording.selectionStart) recording.selectionStart = 0;
    return TakeOverSelection(project);
}

bool EnsureLevels(Project& project) {
    CurrentRecording& recording = project.Recording();
    if (!recording.sheet.levels.empty()) return true;
    const FileServices files = project.Readers().files;
    std::vector<std::uint32_t> marks = recording.sheet.marks;
    if (const auto journal = ReadTakeJournal(files, recording.audioPath); journal && marks.empty())
        marks = journal->marks;
    if (!project.RebuildLevels(recording.audioPath, std::move(marks))) return false;
    std::optional<LevelSheet> sheet = ReadVuFile(files, recording.levelPath);
    if (!sheet) return false;
    recording.sheet = std::move(*sheet);
    recording.length =
        std::max(recording.length, static_cast<std::uint32_t>(recording.sheet.levels.size()));
    return true;
}

}  // namespace orma
