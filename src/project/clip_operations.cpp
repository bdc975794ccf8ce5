#include "project/clip_operations.h"

#include <algorithm>

#include "base/number.h"
#include "project/same_path.h"

namespace orma {
namespace {

/// The number in "<name>-<number>"; 0 for any other title.
int NumberIn(TextView title, TextView name) {
    if (!title.starts_with(name) || title.size() <= name.size() || title[name.size()] != u'-')
        return 0;
    const int number = ParseNumber<int>(ToUtf8(title.substr(name.size() + 1))).value_or(0);
    constexpr int kMost = 999999;  // beyond that it is no number of ours
    return number > 0 && number <= kMost ? number : 0;
}

ClipEntry ClipOf(const CurrentRecording& recording) {
    ClipEntry clip;
    clip.folder = recording.folder;
    clip.name = recording.name;
    return clip;
}

/// Puts a clip into the list, selects it and saves. The clip goes again when it cannot be selected.
bool InsertAndSelect(Project& project, ClipEntry clip) {
    ClipList& clips = project.Clips();
    const std::uint32_t end = clip.end;
    const std::int32_t before = clips.CurrentIndex();
    const std::int32_t index = clips.Insert(std::move(clip));
    clips.At(index).end = end;
    project.CheckClip(clips.At(index));
    if (clips.At(index).length == 0 || !project.SelectClip(index)) {
        clips.Remove(index);
        (void)clips.SetCurrent(before);
        return false;
    }
    return project.SaveProject();
}

bool EmptySelection(const CurrentRecording& recording) {
    return recording.selectionStart >= recording.selectionEnd && recording.selectionEnd != 0;
}

void WarnOfForeignFolder(Project& project, const Text& folder) {
    if (SamePath(folder, project.Folder())) return;
    project.Readers().files.report.Boxes().Show(
        {.text = u"The recording lies outside the project's folder.\n"
                 u"The clip is gone when the project is loaded again.",
         .title = u"Warning",
         .icon = BoxIcon::kWarning});
}

}  // namespace

bool AddClip(Project& project, const Text& path, bool playing) {
    if (playing) return false;
    const PathParts parts = SplitPath(path);
    ClipEntry clip;
    clip.folder = parts.folder;
    clip.name = parts.name;
    if (!SamePath(project.ClipAudioPath(clip), path) || !InsertAndSelect(project, std::move(clip)))
        return false;
    WarnOfForeignFolder(project, parts.folder);
    return true;
}

bool AddCurrentRecording(Project& project, bool playing) {
    const CurrentRecording& recording = project.Recording();
    if (playing || recording.length == 0) return false;
    ClipEntry clip = ClipOf(recording);
    clip.begin = recording.selectionStart;
    clip.end = recording.selectionEnd;
    const Text folder = recording.folder;
    if (!InsertAndSelect(project, std::move(clip))) return false;
    WarnOfForeignFolder(project, folder);
    return true;
}

bool RemoveCurrentClip(Project& project, bool playing) {
    ClipList& clips = project.Clips();
    if (playing || clips.Current() == nullptr) return false;
    clips.RemoveCurrent();
    const bool saved = project.SaveProject();
    // The next recording may have gone missing: its clip is current all the same.
    // Its bounds must not become those of the recording that was removed.
    if (clips.Empty() || !project.SelectClip(clips.CurrentIndex())) project.ClearRecording();
    return saved;
}

bool MoveClipUp(Project& project) {
    const ClipList& clips = project.Clips();
    return MoveClipTo(project, std::max(clips.CurrentIndex() - 1, 0));
}

bool MoveClipDown(Project& project) {
    const ClipList& clips = project.Clips();
    return MoveClipTo(project, std::min(clips.CurrentIndex() + 1, clips.Count() - 1));
}

bool MoveClipTo(Project& project, std::int32_t index) {
    ClipList& clips = project.Clips();
    if (clips.Current() == nullptr || index < 0 || index >= clips.Count()) return false;
    if (clips.CurrentIndex() == index) return true;
    while (clips.CurrentIndex() > index)
        clips.MoveCurrentUp();
    while (clips.CurrentIndex() < index)
        clips.MoveCurrentDown();
    return project.SaveProject();
}

bool RenameClip(Project& project, std::int32_t index, const Text& title, bool playing) {
    ClipList& clips = project.Clips();
    if (playing || index < 0 || index >= clips.Count()) return false;
    clips.At(index).title = title;
    if (index == project.EditedClip()) project.Recording().title = title;
    return project.SaveProject();
}

void CheckAllClips(Project& project) {
    for (std::int32_t i = 0; i < project.Clips().Count(); ++i)
        project.CheckClip(project.Clips().At(i));
}

Text ProposedClipTitle(const Project& project) {
    const ClipList& clips = project.Clips();
    const std::int32_t edited = project.EditedClip();
    if (edited < 0) return project.Recording().name;
    const ClipEntry& source = clips.At(edited);
    int highest = 0;
    for (std::int32_t i = 0; i < clips.Count(); ++i) {
        const ClipEntry& clip = clips.At(i);
        if (SamePath(clip.BasePath(), source.BasePath()))
            highest = std::max(highest, NumberIn(clip.title, source.name));
    }
    return source.name + FormatText("-%d", highest + 1);
}

bool CopyToClipEditor(Project& project, const Text& title) {
    ClipList& clips = project.Clips();
    const CurrentRecording& recording = project.Recording();
    if (recording.length == 0 || EmptySelection(recording)) {
        project.Readers().files.report.ShowError(u"Nothing selected");
        return false;
    }
    const std::int32_t edited = project.EditedClip();
    ClipEntry clip = edited >= 0 ? clips.At(edited) : ClipOf(recording);
    clip.begin = recording.selectionStart;
    clip.end = recording.selectionEnd;
    clip.title = title;
    clip.place = 0;
    project.CheckClip(clip);
    const Text folder = clip.folder;
    (void)clips.SetCurrent(edited >= 0 ? clips.InsertAfterCurrent(std::move(clip))
                                       : clips.Append(std::move(clip)));
    project.Recording().title = title;
    const bool saved = project.SaveProject();
    if (edited < 0) WarnOfForeignFolder(project, folder);
    return saved;
}

}  // namespace orma
