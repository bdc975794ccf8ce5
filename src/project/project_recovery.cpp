// Bringing back takes whose recording was interrupted, and recordings that no clip refers to.

#include <algorithm>
#include <charconv>

#include "audio/files/measured_levels.h"
#include "audio/files/mp2_header.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "base/trace.h"
#include "project/project.h"

namespace orma {
namespace {

/// The number in "<base>NN<extension>", at least two digits; nothing for any other name.
std::optional<std::int32_t> NumberOf(TextView name, TextView base, TextView extension) {
    if (!name.starts_with(base) || !name.ends_with(extension) ||
        name.size() < base.size() + extension.size() + 2)
        return std::nullopt;
    const std::string digits =
        ToUtf8(name.substr(base.size(), name.size() - base.size() - extension.size()));
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool canonical = ToUtf8(FormatText("%.2d", number)) == digits;
    if (error != std::errc() || !canonical) return std::nullopt;
    return number;
}

/// The first bytes of a file; fewer when it is shorter or cannot be read.
Bytes Beginning(Storage& storage, const Text& path, std::size_t bytes) {
    Bytes beginning(bytes);
    std::size_t got = 0;
    std::unique_ptr<StorageFile> file;
    if (storage.Open(path, OpenMode{}, file) != 0 || file->Read(beginning, got) != 0) got = 0;
    beginning.resize(got);
    return beginning;
}

bool HasSound(Storage& storage, const Text& audioPath, bool mp2) {
    const std::size_t header = mp2 ? 0 : WavHeader::kBytes;
    return Beginning(storage, audioPath, header + 1).size() > header;
}

}  // namespace

std::vector<std::int32_t> Project::NumbersOf(TextView extension) const {
    std::vector<Text> names;
    std::vector<std::int32_t> numbers;
    if (Disk().ListFiles(folder_, names) != 0) return numbers;
    for (const Text& name : names) {
        if (const auto number = NumberOf(name, name_, extension)) numbers.push_back(*number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

/// A project without a file takes on the format of the take that is there.
void Project::AdoptFormatOf(const Text& basePath) {
    if (Disk().Exists(ProjectFilePath()) || !s_.clips.Empty()) return;
    AudioState& audio = Audio();
    audio.mp2 = Disk().Exists(basePath + u".mp2");
    const Bytes bytes = Beginning(Disk(), basePath + Text(AudioExtension()), WavHeader::kBytes);
    Mp2Header mp2;
    WavHeader wav;
    if (audio.mp2 && bytes.size() >= mp2.bytes.size()) {
        std::copy_n(bytes.begin(), mp2.bytes.size(), mp2.bytes.begin());
        audio.stereo = mp2.Mode() != 3;
    } else if (!audio.mp2 && WavHeader::Decode(bytes, wav)) {
        audio.stereo = wav.channels == 2;
        data_.audioFormatWord =
            (data_.audioFormatWord & ~kRateCodeBits) | (wav.sampleRate == 48000 ? 0U : 1U);
        ApplySampleRateCode(data_.audioFormatWord & kRateCodeBits);
    }
}

bool Project::RebuildLevels(const Text& audioPath, std::vector<std::uint32_t> marks) {
    AudioState scratch = Audio();
    if (scratch.mp2 && !AdoptMp2Bitrate(Files(), audioPath, scratch, Files().report)) return false;
    const auto reader = MakeReader({Files(), scratch, s_.readers.decoder}, audioPath, scratch.mp2);
    if (reader->Measure() == 0) return false;
    const AudioFileFormat& format = reader->FileFormat();
    const std::uint32_t periods =
        format.bytesPerPeriod == 0 ? 0 : format.dataLength / format.bytesPerPeriod;
    LevelSheet sheet;
    sheet.resolutionShift = scratch.resolutionShift;
    sheet.levels = MeasuredLevels(*reader, periods, scratch.resolutionShift);
    if (sheet.levels.size() != periods) return false;
    sheet.rangeEnd = periods;
    std::erase_if(marks, [periods](std::uint32_t mark) { return mark > periods; });
    sheet.marks = std::move(marks);
    return WriteVuFile(Files(), WithExtension(audioPath, u".jvu"), sheet);
}

RecoveredTake Project::AppendRecording(const Text& name) {
    ClipEntry clip;
    clip.folder = folder_;
    clip.name = name;
    CheckClip(clip);
    RecoveredTake take{name, clip.length};
    if (clip.length > 0) (void)s_.clips.SetCurrent(s_.clips.Append(std::move(clip)));
    return take;
}

/// Makes what a journal belongs to a whole recording with its level file; false when there is none
/// to show.
bool Project::RestoreTake(const Text& basePath) {
    const std::optional<TakeJournalContent> journal =
        ReadTakeJournal(Files(), basePath + Text(TakeJournal::kExtension));
    AdoptFormatOf(basePath);
    if (journal && !Disk().Exists(ProjectFilePath()) && s_.clips.Empty())
        Audio().resolutionShift = journal->resolutionShift;
    const Text audioPath = basePath + Text(AudioExtension());
    RepairTake(Files(), audioPath);
    if (!HasSound(Disk(), audioPath, Audio().mp2)) {
        const bool waits = journal && !journal->sound.empty();
        if (!waits && Disk().Exists(audioPath)) (void)Disk().Delete(audioPath);
        return false;
    }
    if (Disk().Exists(basePath + u".jvu")) return true;
    return RebuildLevels(audioPath, journal ? journal->marks : std::vector<std::uint32_t>{});
}

void Project::RecoverTakes() {
    recovered_.clear();
    std::vector<Text> restored;
    const std::set<Text> referred = ReferredNames();
    for (const std::int32_t number : NumbersOf(TakeJournal::kExtension)) {
        const Text name = name_ + FormatText("%.2d", number);
        const Text basePath = folder_ + name;
        if (IsBeingRecorded(Disk(), basePath + Text(TakeJournal::kExtension))) continue;
        Trace("take %s was interrupted", ToUtf8(basePath).c_str());
        const bool whole = RestoreTake(basePath);
        restored.push_back(basePath + Text(AudioExtension()));
        recordingIndex_ = std::max(recordingIndex_, number);
        if (!whole || referred.contains(name)) continue;
        if (RecoveredTake take = AppendRecording(name); take.periods > 0)
            recovered_.push_back(std::move(take));
    }
    if (!recovered_.empty()) {
        if (!SaveProject()) return;  // reported; the journals stay for the next start
        (void)SelectClip(s_.clips.Count() - 1);
    }
    for (const Text& audioPath : restored)
        DropTakeJournal(Files(), audioPath);
}

std::vector<RecoveredTake> Project::AdoptRecordings() {
    std::vector<RecoveredTake> adopted;
    for (const TextView kind : {u".wav", u".mp2"}) {
        for (const std::int32_t number : NumbersOf(kind)) {
            const Text name = name_ + FormatText("%.2d", number);
            const Text basePath = folder_ + name;
            AdoptFormatOf(basePath);
            if (kind != AudioExtension() || ReferredNames().contains(name) ||
                IsBeingRecorded(Disk(), basePath + Text(TakeJournal::kExtension)))
                continue;
            recordingIndex_ = std::max(recordingIndex_, number);
            if (RecoveredTake take = AppendRecording(name); take.periods > 0)
                adopted.push_back(std::move(take));
        }
    }
    if (adopted.empty() || !SaveProject()) return adopted;
    (void)SelectClip(s_.clips.Count() - 1);
    return adopted;
}

}  // namespace orma
