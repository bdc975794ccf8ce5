// Loading and saving of the current project.

#include <algorithm>
#include <utility>

#include "audio/files/vu_file.h"
#include "base/trace.h"
#include "project/keep_aside.h"
#include "project/missing_clips.h"
#include "project/project.h"
#include "project/take_rewrite.h"
#include "project/text_draft.h"
#include "stream/whole_file.h"

namespace orma {
namespace {

constexpr std::uint32_t kMp2Flag = 1;
constexpr std::uint32_t kLiveFtpFlag = 2;
constexpr std::uint32_t kStereoBits = 0xF0000;  // of the audio format word; any of them on reading
constexpr std::uint32_t kStereoBit = 0x10000;   // ... and this one when written

/// A clip's name never leads out of its folder.
Text WithoutFolder(const Text& name) {
    const std::size_t separator = name.find_last_of(u"/\\");
    return separator == Text::npos ? name : name.substr(separator + 1);
}

std::vector<TextView> SortedNames(const std::vector<ClipEntry>& clips) {
    std::vector<TextView> names(clips.size());
    std::ranges::transform(clips, names.begin(), &ClipEntry::name);
    std::ranges::sort(names);
    return names;
}

/// True when the old file holds a clip, told by its recording's name, that the new one lacks.
bool DropsClips(const ProjectRecord& oldFile, const ProjectRecord& newFile) {
    return !std::ranges::includes(SortedNames(newFile.clips), SortedNames(oldFile.clips));
}

}  // namespace

bool Project::LoadProject() {
    ProjectRecord record;
    switch (ReadProjectFile(Files(), ProjectFilePath(), record)) {
        case ProjectReadResult::kOk:
            Adopt(std::move(record));
            return true;
        case ProjectReadResult::kWrongMagic:
            Files().report.ShowError(u"LoadProject Project Id");
            break;
        case ProjectReadResult::kWrongVersion:
            Files().report.ShowError(u"LoadProject Project Version");
            break;
        case ProjectReadResult::kNotOpened:
            break;
    }
    LeaveRefusedPath();
    return false;
}

void Project::LeaveRefusedPath() {
    if (!before_) return;  // a second load of a project in memory: its path stays
    draft_.reset();
    if (before_->name.empty()) *before_ = {folder_, FreeProjectName(Disk(), folder_, name_), false};
    folder_ = before_->folder;
    name_ = before_->name;
    attached_ = before_->attached;
    before_.reset();
}

void Project::Adopt(ProjectRecord record) {
    attached_ = true;
    before_.reset();

    AudioState& audio = Audio();
    if (record.version >= 8) audio.stereo = (record.audioFormatWord & kStereoBits) != 0;
    ApplySampleRateCode(record.audioFormatWord & kRateCodeBits);
    audio.mp2 = (record.flags & kMp2Flag) != 0;
    audio.resolutionShift = std::min(record.audioLayout, kLargestShift);
    liveFtp_ = (record.flags & kLiveFtpFlag) != 0 && options_.liveFtpAllowed;
    recordingIndex_ = std::max(record.recordingIndex, -1);

    AdoptClips(std::exchange(record.clips, {}));
    data_ = std::move(record);
    foreignText_.clear();
    AdoptTextDraft();
    if (!SelectClip(ShownIndex(data_.currentClip))) OpenNumberedRecording();
}

void Project::AdoptClips(std::vector<ClipEntry> stored) {
    s_.clips.Clear();
    missing_.clear();
    RecoverRewritesIn(s_.readers, folder_);  // a failure is reported
    std::uint32_t place = 0;
    for (ClipEntry& entry : stored) {
        entry.place = ++place;
        ClipEntry clip = entry;
        clip.name = WithoutFolder(entry.name);
        clip.folder = folder_;
        if (!clip.name.empty()) CheckClip(clip);
        if (clip.length != 0)
            s_.clips.Append(std::move(clip));
        else if (!clip.name.empty())
            missing_.push_back(std::move(entry));
    }
}

/// Where a clip of the loaded file stands among those that are shown. The first one stands for a
/// clip that is missing or was never there.
std::int32_t Project::ShownIndex(std::int32_t stored) const {
    if (stored < 0) return -1;
    const auto place = static_cast<std::uint32_t>(stored) + 1;
    for (std::int32_t i = 0; i < s_.clips.Count(); ++i)
        if (s_.clips.At(i).place == place) return i;
    return 0;
}

ProjectRecord Project::RecordToSave() const {
    const AudioState& audio = Audio();
    ProjectRecord record = data_;
    record.audioFormatWord =
        (data_.audioFormatWord & ~kStereoBits) | (audio.stereo ? kStereoBit : 0U);
    record.flags = (data_.flags & ~kMp2Flag) | (audio.mp2 ? kMp2Flag : 0U);
    // Where the settings do not allow it, the project keeps what it was told elsewhere.
    if (options_.liveFtpAllowed)
        record.flags = (record.flags & ~kLiveFtpFlag) | (liveFtp_ ? kLiveFtpFlag : 0U);
    record.recordingIndex = recordingIndex_;
    StoredClips stored = WithMissingClips(s_.clips, missing_);
    record.clips = std::move(stored.clips);
    record.audioLayout = audio.resolutionShift;
    // While all are missing the one that was current stays so.
    if (!s_.clips.Empty()) record.currentClip = stored.current;
    return record;
}

bool Project::SaveProject() {
    const bool levelsStored = StoreMissingLevels();
    return SaveProjectFile() && levelsStored;
}

bool Project::SaveProjectFile() {
    AdoptTextDraft();
    const ProjectRecord record = RecordToSave();
    if (record.clips.empty()) {
        const bool kept = PutTextDraft(record.text == foreignText_ ? Text() : record.text);
        return kept && (!attached_ || RemoveProjectFile());
    }
    if (!MakeRoomFor(record) || !WriteProjectFile(Files(), ProjectFilePath(), record)) return false;
    attached_ = true;
    before_.reset();
    (void)PutTextDraft({});  // one that stays says nothing new
    return true;
}

void Project::AdoptTextDraft() {
    if (draft_) return;
    draft_ = ReadTextDraft(Files(), ProjectFilePath());
    if (draft_->empty() || data_.text.find(*draft_) != Text::npos) return;
    if (data_.text.empty() || data_.text == foreignText_)
        data_.text = *draft_;
    else
        data_.text += u"\r\n\r\n" + *draft_;
}

bool Project::PutTextDraft(const Text& text) {
    if (text == *draft_) return true;
    if (!WriteTextDraft(Files(), ProjectFilePath(), text)) return false;
    draft_ = text;
    return true;
}

/// A level file that could not be written at the end of its take gets another chance: until the
/// next take, its marks are still in memory.
bool Project::StoreMissingLevels() {
    const CurrentRecording& recording = s_.recording;
    const bool missing = !takePending_ && !recording.sheet.levels.empty() &&
                         Disk().Exists(recording.audioPath) && !Disk().Exists(recording.levelPath);
    return !missing || WriteVuFile(Files(), recording.levelPath, recording.sheet);
}

bool Project::MakeRoomFor(const ProjectRecord& record) {
    const Text path = ProjectFilePath();
    if (!Disk().Exists(path)) return true;
    ProjectRecord oldFile;
    const ProjectReadResult result = ReadProjectFile(Files(), path, oldFile);
    if (result == ProjectReadResult::kNotOpened) return false;
    if (result != ProjectReadResult::kOk) {
        constexpr TextView kExtension = u".opr";
        return KeepAside(Files(), folder_ + name_, {&kExtension, 1});
    }
    if (!DropsClips(oldFile, record)) return true;
    const std::optional<Bytes> bytes = ReadWholeFile(Files(), path);
    return bytes && ReplaceWholeFile(Files(), path + u".bak", *bytes);
}

bool Project::RemoveProjectFile() {
    const Text path = ProjectFilePath();
    if (!Disk().Exists(path)) return true;
    ProjectRecord oldFile;
    const ProjectReadResult result = ReadProjectFile(Files(), path, oldFile);
    if (result == ProjectReadResult::kNotOpened) return false;
    if (result != ProjectReadResult::kOk) {
        Trace("Project file of somebody else stays: %s", ToUtf8(path).c_str());
        return true;
    }
    const bool empty = oldFile.clips.empty();
    const SystemError error = empty ? Disk().Delete(path) : Disk().Rename(path, path + u".bak");
    if (error != 0) Files().report.ReportSystemFailure(empty ? u"DeleteFile" : u"MoveFile", error);
    return error == 0;
}

}  // namespace orma
