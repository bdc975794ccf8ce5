// Bringing back takes whose recording was interrupted, and recordings that no clip refers to.

#include <algorithm>
#include <charconv>

#include "audio/files/measured_levels.h"
#include "audio/files/mp2_header.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "base/trace.h"
#include "project/keep_aside.h"
#include "project/project.h"
#include "project/take_layout.h"

namespace orma {
namespace {

/// The number in "<base>NN<extension>", at least two digits; nothing for any other name.
std::optional<std::int32_t> NumberOf(TextView name, TextView base, TextView extension) {
    if (!name.starts_with(base) || !name.ends_with(extension) ||
        name.size() < base.size() + extension.size() + 2)
        return std::nullopt;
    const std::string digits =
        ToUtf8(name.substr(base.size(), name.size() - base.size() - extension.size()));
    if (digits.front() < '0' || digits.front() > '9') return std::nullopt;
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

/// True when a file is there for sure and holds no byte of sound.
bool IsWithoutSound(Storage& storage, const Text& audioPath, TakeKind kind) {
    std::unique_ptr<StorageFile> file;
    std::uint64_t size = 0;
    return storage.Exists(audioPath) && storage.Open(audioPath, OpenMode{}, file) == 0 &&
           file->Size(size) == 0 && size <= (kind == TakeKind::kWav ? WavHeader::kBytes : 0);
}

TextView ExtensionOf(TakeKind kind) {
    return kind == TakeKind::kWav ? u".wav" : u".mp2";
}

/// The numbers of the files "<folder><name>NN<extension>", ascending.
std::vector<std::int32_t> NumbersOf(Storage& storage, const Text& folder, const Text& name,
                                    TextView extension) {
    std::vector<Text> files;
    std::vector<std::int32_t> numbers;
    if (storage.ListFiles(folder, files) != 0) return numbers;
    for (const Text& file : files) {
        if (const auto number = NumberOf(file, name, extension)) numbers.push_back(*number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

}  // namespace

bool HasInterruptedTakes(Storage& storage, const Text& folder, const Text& name) {
    return !NumbersOf(storage, AsFolder(folder), name, TakeJournal::kExtension).empty();
}

/// A project without a file and clips takes on the format of the recording that is there.
void Project::AdoptFormatOf(const Text& audioPath) {
    if (Disk().Exists(ProjectFilePath()) || !s_.clips.Empty()) return;
    AudioState& audio = Audio();
    audio.mp2 = SplitPath(audioPath).extension == u".mp2";
    const Bytes bytes = Beginning(Disk(), audioPath, WavHeader::kBytes);
    Mp2Header mp2;
    WavHeader wav;
    if (audio.mp2 && bytes.size() >= mp2.bytes.size()) {
        std::copy_n(bytes.begin(), mp2.bytes.size(), mp2.bytes.begin());
        audio.stereo = mp2.Mode() != 3;
    } else if (!audio.mp2 && WavHeader::Decode(bytes, wav)) {
        audio.stereo = wav.channels == 2;
        StoreSampleRate(wav.sampleRate);
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
    // The last mark may stand in the part of a second that the encoder still held.
    for (std::uint32_t& mark : marks)
        mark = std::min(mark, periods);
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

/// Makes the take of a journal a whole recording with its level file; false while something of it
/// cannot be had, and the journal is to stay.
bool Project::RestoreTake(const Text& audioPath, const TakeJournalContent& journal) {
    RepairTake(Files(), audioPath);
    if (IsWithoutSound(Disk(), audioPath, journal.kind))
        return !journal.HoldsSound() && Disk().Delete(audioPath) == 0;
    if (!Disk().Exists(audioPath)) return !journal.HoldsSound();
    if (!Disk().Exists(ProjectFilePath()) && s_.clips.Empty())
        Audio().resolutionShift = journal.resolutionShift;
    AdoptFormatOf(audioPath);
    const Text levelPath = WithExtension(audioPath, u".jvu");
    return SplitPath(audioPath).extension == AudioExtension() &&
           (Disk().Exists(levelPath) || RebuildLevels(audioPath, journal.marks));
}

/// True when a take is there whose sound is less than a reader takes for a recording. It can be no
/// clip, but it was recorded: its file stays.
bool Project::IsTooShort(const Text& audioPath) const {
    std::unique_ptr<StorageFile> file;
    std::uint64_t size = 0;
    if (Disk().Open(audioPath, OpenMode{}, file) != 0 || file->Size(size) != 0) return false;
    AudioState scratch = Audio();
    TakeLayout layout;
    layout.mp2 = SplitPath(audioPath).extension == u".mp2";
    WavHeader header;
    if (layout.mp2) {
        if (!AdoptMp2Bitrate(Files(), audioPath, scratch, Files().report)) return false;
        layout.format.bytesPerPeriod = scratch.bitrate.BytesPerPeriod(scratch.resolutionShift);
    } else if (WavHeader::Decode(Beginning(Disk(), audioPath, WavHeader::kBytes), header)) {
        layout.format.bytesPerPeriod = header.byteRate / scratch.PeriodsPerSecond();
        size -= WavHeader::kBytes;
    }
    return layout.format.bytesPerPeriod > 0 && !layout.IsReadable(size);
}

/// Lets go of the journal of a take that stands in the project. Sound in it that cannot be joined
/// to the take any more stays beside it under another name.
void Project::SettleJournal(const Text& audioPath) {
    constexpr TextView kJournal = TakeJournal::kExtension;
    if (DropTakeJournal(Files(), audioPath) != JournalFate::kFitsNowhere) return;
    Trace("sound in the journal of %s fits nowhere", ToUtf8(audioPath).c_str());
    (void)KeepAside(Files(), WithExtension(audioPath, u""), {&kJournal, 1});
}

void Project::RecoverTakes() {
    recovered_.clear();
    leftAlone_.clear();
    std::vector<Text> settled;
    const std::set<Text> referred = ReferredNames();
    for (const std::int32_t number : NumbersOf(Disk(), folder_, name_, TakeJournal::kExtension)) {
        const Text name = name_ + FormatText("%.2d", number);
        const Text journalPath = folder_ + name + Text(TakeJournal::kExtension);
        if (IsInUse(Disk(), journalPath)) {
            leftAlone_.push_back(name);
            continue;
        }
        const std::optional<TakeJournalContent> journal = ReadTakeJournal(Files(), journalPath);
        // "a" 100 is the take 00 of project "a1".
        if (!journal ||
            (journal->projectNameUnits != 0 && journal->projectNameUnits != name_.size()))
            continue;
        Trace("take %s was interrupted", ToUtf8(name).c_str());
        const Text audioPath = WithExtension(journalPath, ExtensionOf(journal->kind));
        const bool whole = RestoreTake(audioPath, *journal);
        recordingIndex_ = std::max(recordingIndex_, number);
        bool hasClip = referred.contains(name);
        if (RecoveredTake take = hasClip ? RecoveredTake{} : AppendRecording(name);
            take.periods > 0) {
            recovered_.push_back(std::move(take));
            hasClip = true;
        }
        const bool restored = whole && (hasClip || !Disk().Exists(audioPath));
        if (!restored) leftAlone_.push_back(name);
        if (restored || (!hasClip && IsTooShort(audioPath))) settled.push_back(audioPath);
    }
    if (!recovered_.empty()) {
        if (!SaveProject()) return;  // reported; the journals stay for the next start
        (void)SelectClip(s_.clips.Count() - 1);
    }
    for (const Text& audioPath : settled)
        SettleJournal(audioPath);
}

std::vector<RecoveredTake> Project::AdoptRecordings() {
    std::vector<RecoveredTake> adopted;
    for (const TextView kind : {u".wav", u".mp2"}) {
        for (const std::int32_t number : NumbersOf(Disk(), folder_, name_, kind)) {
            const Text name = name_ + FormatText("%.2d", number);
            const Text audioPath = folder_ + name + Text(kind);
            if (number > kLastOwnNumber || ReferredNames().contains(name) ||
                IsBeingRecorded(Disk(), audioPath))
                continue;
            AdoptFormatOf(audioPath);
            if (kind != AudioExtension()) continue;
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
