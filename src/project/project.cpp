#include "project/project.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "project/clip_texts.h"
#include "project/recording_access.h"
#include "project/same_path.h"
#include "project/silent_boxes.h"
#include "stream/whole_file.h"

namespace orma {
Text FreeProjectName(Storage& storage, const Text& folder, const Text& name) {
    Text candidate = name;
    for (int number = 1; storage.Exists(AsFolder(folder) + candidate + u".opr"); ++number)
        candidate = name + FormatText("%d-", number);
    return candidate;
}

Project::Project(ProjectServices services) : s_(services) {}

void Project::SetPath(const Text& folder, const Text& name) {
    before_ = Place{folder_, name_, attached_};
    folder_ = AsFolder(folder);
    name_ = name.empty() ? u"default" : name;
    attached_ = false;
    draft_.reset();
}

Text Project::ProjectFilePath() const {
    return folder_ + name_ + u".opr";
}

Text Project::RecordingBaseName() const {
    return folder_ + name_ + FormatText("%.2d", std::max(recordingIndex_, 0));
}

Text Project::LevelFilePath() const {
    return RecordingBaseName() + u".jvu";
}

Text Project::AudioFilePath() const {
    return RecordingBaseName() + Text(AudioExtension());
}

Text Project::ClipAudioPath(const ClipEntry& clip) const {
    return clip.BasePath() + Text(AudioExtension());
}

void Project::RecomputePaths() {
    s_.recording.folder = folder_;
    s_.recording.name = SplitPath(AudioFilePath()).name;
    s_.recording.audioPath = AudioFilePath();
    s_.recording.levelPath = LevelFilePath();
}

void Project::ClearRecording() {
    CurrentRecording& recording = s_.recording;
    recording.title.clear();
    recording.sheet.Clear(Audio().resolutionShift);
    recording.length = 0;
    recording.selectionStart = 0;
    recording.selectionEnd = 0;
    recording.cursor = 0;
    recording.currentCut = -1;
    recording.undo = {};
}

void Project::StoreSampleRate(std::uint32_t rate) {
    data_.audioFormatWord = (data_.audioFormatWord & ~kRateCodeBits) | (rate == 44100 ? 1U : 0U);
}

void Project::ApplySampleRateCode(std::uint32_t code) {
    if (code <= 1) Audio().sampleRate = code == 0 ? 48000 : 44100;
}

void Project::AdoptTextFile() {
    if (!options_.useTextFile || options_.textFile.empty()) return;
    const std::optional<Bytes> bytes = ReadWholeFile(Files(), options_.textFile);
    if (!bytes) return;
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    data_.text = text.starts_with(kUtf8Mark) ? FromUtf8(text.substr(kUtf8Mark.size()))
                                             : FromWindows1252(text);
}

void Project::NewProject() {
    AudioState& audio = Audio();
    audio.mp2 = options_.recordMp2;
    audio.stereo = options_.stereo;
    audio.resolutionShift = std::min(options_.resolutionShift, kLargestShift);
    audio.bitrate.SetMp2Bitrate(options_.bitrateIndex, Files().report);
    liveFtp_ = options_.liveFtpAllowed && options_.liveFtpNewProjects;

    data_ = ProjectRecord{};
    data_.audioFormatWord = options_.sampleRateCode & kRateCodeBits;
    ApplySampleRateCode(data_.audioFormatWord);
    missing_.clear();
    s_.clips.Clear();
    recordingIndex_ = -1;
    ClearRecording();
    RecomputePaths();
    s_.recording.name = name_;  // no recording yet: the project's own name stands for it
    attached_ = true;
    before_.reset();
    AdoptTextFile();
    foreignText_ = data_.text;
    AdoptTextDraft();
}

void Project::NextRecording() {
    // After the largest index comes 0: PrepareTake keeps what lies there.
    constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
    recordingIndex_ = recordingIndex_ == kLargest ? 0 : recordingIndex_ + 1;
    RecomputePaths();
}

void Project::PreviousRecording() {
    if (recordingIndex_ >= -1) --recordingIndex_;
    RecomputePaths();
}

bool Project::SelectClip(std::int32_t index) {
    if (index < 0 || index >= s_.clips.Count()) return false;
    const ClipEntry& clip = s_.clips.At(index);
    const Text audioPath = ClipAudioPath(clip);
    if (!Disk().Exists(audioPath)) return false;
    std::optional<CurrentRecording> recording = ReadRecording(s_.readers, audioPath);
    if (!recording) return false;
    recording->title = clip.title;
    if (clip.end != 0) {
        recording->selectionStart = std::min(clip.begin, recording->length);
        recording->selectionEnd = std::min(clip.end, recording->length);
    }
    std::erase_if(recording->sheet.cuts,
                  [](const RemovedRange& cut) { return cut.begin == cut.end; });
    s_.recording = std::move(*recording);
    return s_.clips.SetCurrent(index);
}

std::int32_t Project::EditedClip() const {
    const std::int32_t current = s_.clips.CurrentIndex();
    const bool edited = current >= 0 && current < s_.clips.Count() && s_.recording.length > 0 &&
                        SamePath(ClipAudioPath(s_.clips.At(current)), s_.recording.audioPath);
    return edited ? current : -1;
}

bool Project::OpenRecording(const Text& audioPath) {
    std::optional<CurrentRecording> recording = ReadRecording(s_.readers, audioPath);
    if (!recording) return false;
    s_.recording = std::move(*recording);
    s_.clips.ClearCurrent();
    return true;
}

void Project::OpenNumberedRecording() {
    s_.clips.ClearCurrent();
    ClearRecording();
    RecomputePaths();
    // Below 0 there is no recording, whatever lies under the name of number 00.
    if (recordingIndex_ >= 0 && Disk().Exists(s_.recording.audioPath))
        (void)OpenRecording(AudioFilePath());
}

void Project::CheckClip(ClipEntry& clip) {
    SilentBoxes boxes;
    ErrorReporter report(boxes, Disk());
    const Text audioPath = ClipAudioPath(clip);
    clip.fileTime = {};
    clip.length = 0;
    FileTime time;
    if (Disk().LastWriteTime(audioPath, time) == 0) clip.fileTime = s_.clock.ToLocal(time);
    // A recording whose date is unknown is there all the same.
    if (Disk().Exists(audioPath))
        clip.length = ClipLength({{Disk(), report}, Audio(), s_.readers.decoder}, clip, audioPath);
    clip.lengthSeconds = clip.length / Audio().PeriodsPerSecond();
    UpdateClipTexts(clip, options_.descriptionMode);
}

}  // namespace orma
