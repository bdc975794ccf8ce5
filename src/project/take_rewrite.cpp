#include "project/take_rewrite.h"

#include <array>

#include "audio/files/mp2_header.h"
#include "audio/files/take_repair.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "base/path.h"
#include "base/trace.h"
#include "project/keep_aside.h"
#include "project/silent_boxes.h"

namespace orma {
namespace {

constexpr OpenMode kPatching{.access = Access::kWrite, .share = Share::kNone};

SystemError FileSize(Storage& storage, const Text& path, std::uint64_t& bytes) {
    std::unique_ptr<StorageFile> file;
    if (const SystemError error = storage.Open(path, OpenMode{}, file); error != 0) return error;
    return file->Size(bytes);
}

/// The extension of the recording that a file holds, by its first bytes; empty for any other file.
TextView ExtensionOf(Storage& storage, const Text& path, Mp2Header& header) {
    std::unique_ptr<StorageFile> file;
    std::size_t got = 0;
    if (storage.Open(path, OpenMode{}, file) != 0 || file->Read(header.bytes, got) != 0) return {};
    if (IsTag(header.bytes.data(), "RIFF")) return u".wav";
    return header.IsLayer2() ? u".mp2" : u"";
}

/// Moves the original out of the way to a name under which it can be opened; false when it stays.
bool KeepOriginal(Storage& storage, const RewritePaths& paths) {
    const PathParts parts = SplitPath(paths.audio);
    const std::array<TextView, 4> kinds = {parts.extension, u".jvu", RewritePaths::kOriginal,
                                           RewritePaths::kLevels};
    const Text kept = KeptPath(storage, parts.folder + parts.name, kinds);
    return storage.Rename(paths.original, kept + parts.extension) == 0;
}

/// Renames a file; false on failure (reported).
bool Move(FileServices files, const Text& from, const Text& to) {
    const SystemError error = files.storage.Rename(from, to);
    if (error != 0) files.report.ReportSystemFailure(u"MoveFile", error);
    return error == 0;
}

void DeleteIfThere(Storage& storage, const Text& path) {
    if (storage.Exists(path)) (void)storage.Delete(path);
}

/// Whether an interrupted cut in place had cut the file: then only its level file is missing.
/// Nothing when the files cannot tell.
std::optional<bool> WasCutInPlace(ReaderServices services, const RewritePaths& paths) {
    SilentBoxes boxes;
    ErrorReporter report(boxes, services.files.storage);
    const FileServices files{services.files.storage, report};
    const std::optional<LevelSheet> sheet = ReadVuFile(files, paths.nextLevels);
    if (!sheet) return std::nullopt;
    // The recording need not be one of the current format.
    AudioState scratch = services.audio;
    Mp2Header header;
    scratch.mp2 = ExtensionOf(files.storage, paths.audio, header) == u".mp2";
    scratch.stereo = header.Mode() != 3;
    scratch.resolutionShift = sheet->resolutionShift;
    RepairTake(files, paths.audio);
    const auto layout = ReadTakeLayout({files, scratch, services.decoder}, paths.audio);
    if (!layout) return std::nullopt;
    return layout->fileBytes == layout->CutSize(static_cast<std::uint32_t>(sheet->levels.size()));
}

}  // namespace

RewritePaths::RewritePaths(const Text& audioPath)
    : audio(audioPath),
      original(WithExtension(audioPath, kOriginal)),
      nextLevels(WithExtension(audioPath, kLevels)),
      levels(WithExtension(audioPath, u".jvu")) {}

TakeReplacement::TakeReplacement(FileServices files, const Text& audioPath)
    : files_(files), paths_(audioPath), file_(files, audioPath) {}

bool TakeReplacement::Commit(const LevelSheet& sheet) {
    Stream().Flush();
    if (!Stream().IsOpen()) return false;
    const bool replaces = files_.storage.Exists(paths_.audio);
    if (replaces && !Move(files_, paths_.audio, paths_.original)) return false;
    if (!WriteVuFile(files_, paths_.nextLevels, sheet) || !file_.Commit() ||
        !Move(files_, paths_.nextLevels, paths_.levels)) {
        TakeBack(replaces);
        return false;
    }
    if (!replaces) return true;
    if (const SystemError error = files_.storage.Delete(paths_.original); error != 0) {
        // It must not lie there when the recording is opened next.
        files_.report.ReportSystemFailure(u"DeleteFile", error);
        (void)KeepOriginal(files_.storage, paths_);
    }
    return true;
}

void TakeReplacement::TakeBack(bool replaces) {
    if (replaces) {
        if (!Move(files_, paths_.original, paths_.audio)) {
            files_.report.ShowError(u"The recording is kept as " + paths_.original);
            return;
        }
    } else {
        DeleteIfThere(files_.storage, paths_.audio);
    }
    // Last: as long as the original lies aside, the new sound needs its levels.
    DeleteIfThere(files_.storage, paths_.nextLevels);
}

bool TruncateTake(FileServices files, const Text& audioPath, const TakeLayout& layout,
                  std::uint32_t end, const LevelSheet& sheet) {
    const RewritePaths paths(audioPath);
    Storage& storage = files.storage;
    if (!WriteVuFile(files, paths.nextLevels, sheet)) return false;

    const auto size = static_cast<std::uint32_t>(layout.CutSize(end));
    bool succeeded = false;
    {
        JStreamFile take(files, audioPath, kPatching);
        if (!layout.mp2) {
            // In this order a crash between the two is told from a file with more chunks.
            WriteNumberAt(take, WavHeader::kRiffSizeOffset, size + 36);
            WriteNumberAt(take, WavHeader::kDataSizeOffset, size);
        }
        take.Truncate(size);
        take.Flush();
        const bool whole = take.IsOpen();
        take.Close();
        succeeded = whole && take.Has(JStream::kGood);
    }
    std::uint64_t now = 0;
    if (const SystemError error = FileSize(storage, audioPath, now); error != 0) {
        files.report.ReportSystemFailure(u"CreateFile", error);
        return false;  // opening the recording will tell
    }
    if (now != size) {
        RepairTake(files, audioPath);
        DeleteIfThere(storage, paths.nextLevels);
        return false;
    }
    if (storage.Rename(paths.nextLevels, paths.levels) == 0) return succeeded;
    const bool written = WriteVuFile(files, paths.levels, sheet);
    if (written) DeleteIfThere(storage, paths.nextLevels);
    return written && succeeded;
}

bool RecoverRewrite(ReaderServices services, const Text& audioPath) {
    const RewritePaths paths(audioPath);
    const FileServices files = services.files;
    Storage& storage = files.storage;
    const bool original = storage.Exists(paths.original);
    const bool next = storage.Exists(paths.nextLevels);
    if (!original && !next) return true;

    Trace("rewrite of %s was interrupted", ToUtf8(audioPath).c_str());
    if (original && !storage.Exists(audioPath)) {
        // Recordings of both kinds have one name for their original.
        Mp2Header header;
        if (ExtensionOf(storage, paths.original, header) != SplitPath(audioPath).extension)
            return true;
        if (!Move(files, paths.original, audioPath)) return false;
        DeleteIfThere(storage, paths.nextLevels);
        return true;
    }
    if (original) {
        if (next && !Move(files, paths.nextLevels, paths.levels)) return false;
        // Where it cannot be moved away it does no harm: the same happens again.
        (void)KeepOriginal(storage, paths);
        return true;
    }
    if (!storage.Exists(audioPath)) return true;
    const std::optional<bool> cut = WasCutInPlace(services, paths);
    if (cut == true) return Move(files, paths.nextLevels, paths.levels);
    if (cut == false) DeleteIfThere(storage, paths.nextLevels);
    return true;
}

void RecoverRewritesIn(ReaderServices services, const Text& folder) {
    Storage& storage = services.files.storage;
    std::vector<Text> files;
    if (storage.ListFiles(folder, files) != 0) return;
    for (const Text& file : files) {
        const PathParts parts = SplitPath(file);
        const RewritePaths paths(folder + parts.name + u".wav");
        Mp2Header header;
        TextView extension;
        if (parts.extension == RewritePaths::kOriginal)
            extension = ExtensionOf(storage, paths.original, header);
        else if (parts.extension == RewritePaths::kLevels)
            extension = storage.Exists(paths.audio) ? u".wav" : u".mp2";
        if (!extension.empty())
            (void)RecoverRewrite(services, folder + parts.name + Text(extension));
    }
}

}  // namespace orma
