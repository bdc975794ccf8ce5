// What the current project does for the recorder.

#include <array>

#include "audio/files/vu_file.h"
#include "project/clip_texts.h"
#include "project/keep_aside.h"
#include "project/project.h"
#include "project/same_path.h"
#include "project/take_rewrite.h"

namespace orma {
namespace {

// Both kinds of sound count: they would share one level file and one journal.
constexpr std::array<TextView, 6> kRecordingKinds = {u".wav",
                                                     u".mp2",
                                                     u".jvu",
                                                     TakeJournal::kExtension,
                                                     RewritePaths::kOriginal,
                                                     RewritePaths::kLevels};

}  // namespace

/// The names in the project's folder that clips refer to, also those of missing recordings: sound
/// under such a name would be taken for theirs.
std::set<Text> Project::ReferredNames() const {
    std::set<Text> names;
    for (std::int32_t i = 0; i < s_.clips.Count(); ++i) {
        const ClipEntry& clip = s_.clips.At(i);
        if (SamePath(clip.folder, folder_)) names.insert(clip.name);
    }
    for (const ClipEntry& clip : missing_)
        names.insert(clip.name);
    return names;
}

Text Project::PrepareTake() {
    const std::set<Text> referred = ReferredNames();
    s_.clips.ClearCurrent();
    // A project file that was not read may refer to anything here.
    bool mayMove = attached_ || !Disk().Exists(ProjectFilePath());
    for (bool free = false; !free;) {
        NextRecording();
        if (recordingIndex_ < 0 || referred.contains(s_.recording.name)) continue;
        const Text basePath = RecordingBaseName();
        free = !AnyExists(Disk(), basePath, kRecordingKinds);
        if (free || !mayMove || recordingIndex_ > kLastOwnNumber ||
            IsBeingRecorded(Disk(), AudioFilePath()))
            continue;
        // What a crash left unfinished is playable under its new name.
        for (const TextView kind : {u".wav", u".mp2"}) {
            RepairTake(Files(), basePath + Text(kind));
            // Without a level file its marks are in the journal alone.
            if (Disk().Exists(basePath + u".jvu")) DropTakeJournal(Files(), basePath + Text(kind));
        }
        free = mayMove = KeepAside(Files(), basePath, kRecordingKinds);
    }
    ClearRecording();
    takePending_ = true;
    return s_.recording.name;
}

void Project::TakeFinished() {
    takePending_ = false;
    CurrentRecording& recording = s_.recording;
    const auto periods = static_cast<std::uint32_t>(recording.sheet.levels.size());
    if (!Disk().Exists(recording.audioPath))
        Files().report.ShowError(u"The recording is gone:\n" + recording.audioPath);
    recording.sheet.rangeStart = 0;
    recording.sheet.rangeEnd = periods;
    recording.length = periods;
    // A failure is reported; the sound is what counts.
    (void)WriteVuFile(Files(), recording.levelPath, recording.sheet);
    // The device decided on the rate; the project records it.
    StoreSampleRate(Audio().sampleRate);

    ClipEntry clip;
    clip.folder = recording.folder;
    clip.name = recording.name;
    CheckClip(clip);
    if (clip.length == 0) {
        clip.length = periods;
        clip.lengthSeconds = periods / Audio().PeriodsPerSecond();
        UpdateClipTexts(clip, options_.descriptionMode);
    }
    const std::int32_t index = s_.clips.Append(std::move(clip));
    (void)s_.clips.SetCurrent(index);
    // A failure is reported; the clip stays for the next save, and the journal until then.
    if (SaveProject()) DropTakeJournal(Files(), recording.audioPath);

    LevelSheet sheet = recording.sheet;
    if (SelectClip(index) && recording.sheet.levels.empty()) recording.sheet = std::move(sheet);
}

void Project::TakeDiscarded(bool created) {
    if (!takePending_) return;
    takePending_ = false;
    const bool isOurs = created && !IsBeingRecorded(Disk(), AudioFilePath());
    const Text journalPath = RecordingBaseName() + Text(TakeJournal::kExtension);
    for (const Text& path : {AudioFilePath(), LevelFilePath(), journalPath}) {
        if (!isOurs || !Disk().Exists(path)) continue;
        if (const SystemError error = Disk().Delete(path); error != 0)
            Files().report.ReportSystemFailure(u"DeleteFile", error);
    }
    PreviousRecording();
    SelectLastTake();
}

void Project::SelectLastTake() {
    std::int32_t last = s_.clips.Count() - 1;
    for (std::int32_t i = last; i >= 0 && recordingIndex_ >= 0; --i) {
        if (!SamePath(s_.clips.At(i).BasePath(), RecordingBaseName())) continue;
        last = i;
        break;
    }
    if (!SelectClip(last)) OpenNumberedRecording();
}

}  // namespace orma
