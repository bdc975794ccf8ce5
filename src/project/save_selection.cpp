#include "project/save_selection.h"

#include <algorithm>

#include "audio/files/take_repair.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "project/recording_access.h"
#include "project/same_path.h"
#include "project/selection.h"
#include "project/take_rewrite.h"

namespace orma {
namespace {

constexpr std::uint32_t kMp2CopyBytes = 8192;
constexpr std::uint64_t kLargestFile = 0xFFFFFFFF;

void WriteHeader(JStreamFile& target, const AudioFileFormat& format, std::uint32_t dataBytes) {
    WavHeader header;
    const auto sampleBytes = static_cast<std::uint16_t>((format.bitsPerSample + 7) / 8);
    header.riffSize = dataBytes + 36;
    header.channels = format.channels;
    header.sampleRate = format.sampleRate;
    header.byteRate = format.sampleRate * format.channels * sampleBytes;
    header.blockAlign = sampleBytes;  // not times the channels, as in every take
    header.bitsPerSample = format.bitsPerSample;
    header.dataSize = dataBytes;
    target.Write(header.Encode().data(), WavHeader::kBytes);
}

/// Writes the sound of [begin, end) to `target`, zeros where the source cannot be read any more
/// (reported). Returns how many bytes were read.
std::uint64_t CopySelection(JStreamFile& source, const TakeLayout& layout, std::uint32_t begin,
                            std::uint32_t end, JStreamFile& target) {
    const std::uint64_t total = layout.SoundBytes(begin, end);
    if (!layout.mp2) WriteHeader(target, layout.format, static_cast<std::uint32_t>(total));
    const std::uint64_t from = layout.format.dataOffset + layout.SoundBefore(begin);
    source.SetPosition(static_cast<std::int32_t>(static_cast<std::uint32_t>(from)));
    Bytes block(layout.mp2 ? kMp2CopyBytes : layout.format.bytesPerPeriod);
    // The levels may count a last period that the sound does not fill; other chunks may follow it.
    const std::uint64_t dataEnd =
        std::uint64_t{layout.format.dataOffset} + layout.format.dataLength;
    std::uint64_t got = 0;
    for (std::uint64_t done = 0; done < total && target.IsOpen();) {
        const std::uint64_t at = from + done;
        const std::uint64_t count = std::min<std::uint64_t>(total - done, block.size());
        const std::uint64_t stored = std::min(count, dataEnd - std::min(at, dataEnd));
        std::ranges::fill(block, std::uint8_t{0});
        source.ReadHeld(block.data(), static_cast<std::uint32_t>(stored));
        if (source.IsOpen()) got += count;
        target.Write(block.data(), static_cast<std::uint32_t>(count));
        done += count;
    }
    return got;
}

/// True when no journal is left beside a recording whose sound could be brought in later.
bool ReleaseJournal(FileServices files, const Text& audioPath) {
    RepairTake(files, audioPath);
    if (DropTakeJournal(files, audioPath) != JournalFate::kWaits) return true;
    files.report.ShowError(u"The recording is in use: " + audioPath);
    return false;
}

/// One saving of the current selection.
class SelectionSave {
  public:
    SelectionSave(Project& project, const Text& path)
        : project_(project),
          recording_(project.Recording()),
          files_(project.Readers().files),
          path_(path),
          begin_(recording_.selectionStart),
          end_(std::min(recording_.selectionEnd, recording_.length)) {}

    bool Run() {
        if (!Prepare()) return false;
        if (!SamePath(path_, recording_.audioPath)) return SaveCopy();
        if (begin_ == 0 && end_ == recording_.length) {
            recording_.cursor = 0;
            return true;
        }
        const bool inPlace = CutsInPlace();
        const std::uint64_t sound = inPlace ? layout_->CutSize(end_) - layout_->format.dataOffset
                                            : layout_->SoundBytes(begin_, end_);
        if (!layout_->IsReadable(sound)) return Refuse(u"The selection is too short.");
        const bool saved = inPlace ? CutInPlace() : SaveAs(true);
        return FollowFile(saved) && saved;
    }

  private:
    static constexpr std::uint32_t kHeader = WavHeader::kBytes;

    [[nodiscard]] bool Exists(const Text& path) const { return files_.storage.Exists(path); }

    bool Refuse(const Text& text) {
        files_.report.ShowError(text);
        return false;
    }

    [[nodiscard]] bool CutsInPlace() const {
        return begin_ == 0 && layout_->CanBeCutInPlace() &&
               layout_->CutSize(end_) <= layout_->fileBytes;
    }

    /// Everything that can be refused before a file is touched.
    bool Prepare() {
        const Text extension = SplitPath(recording_.audioPath).extension;
        const Text other = WithExtension(path_, extension == u".mp2" ? u".wav" : u".mp2");
        // Both kinds would share one level file and one original.
        if (Exists(other)) return Refuse(u"The name belongs to another recording: " + other);
        if (!EnsureLevels(project_) || !ReleaseJournal(files_, recording_.audioPath)) return false;
        if (!SamePath(path_, recording_.audioPath) &&
            (!RecoverRewrite(project_.Readers(), path_) || !ReleaseJournal(files_, path_)))
            return false;
        layout_ = ReadTakeLayout(project_.Readers(), recording_.audioPath);
        if (!layout_) return false;
        if (recording_.sheet.resolutionShift != layout_->shift)
            return Refuse(u"The level file has another resolution than the project.");
        if (layout_->SoundBytes(begin_, end_) + kHeader > kLargestFile)
            return Refuse(u"The selection is too long.");
        return true;
    }

    [[nodiscard]] LevelSheet Sheet() const {
        return SheetOfSelection(recording_.sheet, begin_, end_);
    }

    bool SaveCopy() {
        const bool saved = SaveAs(Exists(path_));
        // It may have been a recording of the list.
        ClipList& clips = project_.Clips();
        for (std::int32_t i = 0; i < clips.Count(); ++i)
            if (SamePath(project_.ClipAudioPath(clips.At(i)), path_))
                project_.CheckClip(clips.At(i));
        return saved;
    }

    bool SaveAs(bool replaces) {
        FileTime recorded;
        const bool dated = files_.storage.LastWriteTime(recording_.audioPath, recorded) == 0;
        JStreamFile source(files_, recording_.audioPath, true);
        if (!source.IsOpen()) return false;
        TakeReplacement target(files_, path_);
        const std::uint64_t got = CopySelection(source, *layout_, begin_, end_, target.Stream());
        const bool whole = got == layout_->SoundBytes(begin_, end_);
        if (!whole && (replaces || got == 0)) return false;
        if (!target.Commit(Sheet())) return false;
        if (dated) (void)files_.storage.SetLastWriteTime(path_, recorded);
        return whole;
    }

    bool CutInPlace() {
        FileTime recorded;
        const bool dated = files_.storage.LastWriteTime(path_, recorded) == 0;
        const bool cut = TruncateTake(files_, path_, *layout_, end_, Sheet());
        if (dated) (void)files_.storage.SetLastWriteTime(path_, recorded);
        return cut;
    }

    /// Brings clips and memory in line with what is on disk now: after a failure that may still be
    /// the old recording.
    bool FollowFile(bool saved) {
        const Text path = path_;
        if (!saved) {
            const auto now = ReadRecording(project_.Readers(), path);
            if (!now || now->length != end_ - begin_) return false;
        }
        const bool kept = !ClipsFollow() || project_.SaveProject();
        const std::int32_t edited = project_.EditedClip();
        const bool open = edited >= 0 ? project_.SelectClip(edited) : project_.OpenRecording(path);
        return kept && open;
    }

    /// Leaves the clips of the rewritten recording what is left of their range; true when there
    /// were any.
    bool ClipsFollow() {
        ClipList& clips = project_.Clips();
        bool any = false;
        for (std::int32_t i = clips.Count() - 1; i >= 0; --i) {
            ClipEntry& clip = clips.At(i);
            if (!SamePath(project_.ClipAudioPath(clip), path_)) continue;
            any = true;
            if (clip.end != 0) {
                clip.begin = std::clamp(clip.begin, begin_, end_) - begin_;
                clip.end = std::clamp(clip.end, begin_, end_) - begin_;
                if (clip.begin >= clip.end) {
                    if (i == clips.CurrentIndex()) clips.ClearCurrent();
                    clips.Remove(i);
                    continue;
                }
                if (clip.begin == 0 && clip.end == end_ - begin_) clip.end = 0;
            }
            project_.CheckClip(clip);
        }
        return any;
    }

    Project& project_;
    CurrentRecording& recording_;
    FileServices files_;
    Text path_;
    std::uint32_t begin_;
    std::uint32_t end_;
    std::optional<TakeLayout> layout_;
};

}  // namespace

Text ProposedSelectionPath(const Project& project) {
    const PathParts parts = SplitPath(project.Recording().audioPath);
    return parts.folder + parts.name + (parts.extension == u".mp2" ? u"_S.mp2" : u"_S.wav");
}

bool MenuSaveSelAs(Project& project, const Text& path, bool busy) {
    const CurrentRecording& recording = project.Recording();
    ErrorReporter& report = project.Readers().files.report;
    if (busy) {
        report.ShowError(u"MenuSaveSelAs");
        return false;
    }
    if (recording.selectionStart >= std::min(recording.selectionEnd, recording.length)) {
        report.ShowError(u"Nothing selected");
        return false;
    }
    return SelectionSave(project, path).Run();
}

}  // namespace orma
