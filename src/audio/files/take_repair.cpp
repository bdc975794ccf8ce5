#include "audio/files/take_repair.h"

#include <algorithm>
#include <array>
#include <memory>

#include "audio/files/wav_header.h"
#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::uint64_t kLargestJournal = std::uint64_t{2} << 20;
constexpr OpenMode kPatching{.access = Access::kReadWrite};

/// Opens a file for writing that is there; null when it is not, or somebody else writes it.
std::unique_ptr<StorageFile> OpenForPatching(Storage& storage, const Text& path) {
    std::unique_ptr<StorageFile> file;
    if (!storage.Exists(path) || storage.Open(path, kPatching, file) != 0) return nullptr;
    return file;
}

Text JournalPath(const Text& takePath) {
    return WithExtension(takePath, TakeJournal::kExtension);
}

/// A journal of ours and the file that keeps others from it.
struct HeldJournal {
    std::unique_ptr<StorageFile> file;
    TakeJournalContent content;
};

std::optional<HeldJournal> HoldJournal(Storage& storage, const Text& takePath) {
    HeldJournal held{OpenForPatching(storage, JournalPath(takePath)), {}};
    std::uint64_t size = 0;
    if (held.file == nullptr || held.file->Size(size) != 0 || size > kLargestJournal)
        return std::nullopt;
    Bytes bytes(static_cast<std::size_t>(size));
    std::size_t got = 0;
    if (held.file->Read(bytes, got) != 0) return std::nullopt;
    std::optional<TakeJournalContent> content = DecodeTakeJournal(ByteSpan(bytes).first(got));
    if (!content) return std::nullopt;
    held.content = std::move(*content);
    return held;
}

bool IsOfKind(const Text& audioPath, TakeKind kind) {
    return SplitPath(audioPath).extension == (kind == TakeKind::kWav ? u".wav" : u".mp2");
}

bool ReadAt(StorageFile& file, std::uint64_t place, std::span<std::uint8_t> into) {
    std::uint64_t position = 0;
    std::size_t got = 0;
    return file.Seek(static_cast<std::int64_t>(place), SeekFrom::kStart, position) == 0 &&
           file.Read(into, got) == 0 && got == into.size();
}

enum class Missing {
    kNothing,
    kSound,
    kUnjoinable,  // the sound ends before the journal's, or this is another file
    kUnknown,     // the take cannot be read
};

bool IsSizeField(std::uint64_t at) {
    return (at >= WavHeader::kRiffSizeOffset && at < WavHeader::kRiffSizeOffset + 4) ||
           (at >= WavHeader::kDataSizeOffset && at < WavHeader::kDataSizeOffset + 4);
}

/// Whether the take lacks sound that its journal holds. Where both know it, they must agree; a
/// power cut may have left zeros, which hold nothing.
Missing LacksSound(StorageFile& take, const TakeJournalContent& journal) {
    std::uint64_t size = 0;
    if (take.Size(size) != 0) return Missing::kUnknown;
    if (!journal.HoldsSound()) return Missing::kNothing;
    if (size < journal.position) return Missing::kUnjoinable;
    const bool isWav = journal.kind == TakeKind::kWav;
    if (isWav && journal.position > 0) {
        std::array<std::uint8_t, WavHeader::kBytes> bytes{};
        WavHeader header;
        if (!ReadAt(take, 0, bytes)) return Missing::kUnknown;
        if (!WavHeader::Decode(bytes, header)) return Missing::kUnjoinable;
    }
    const std::uint64_t end = std::min<std::uint64_t>(size, journal.End());
    Bytes known(static_cast<std::size_t>(end - journal.position));
    if (!ReadAt(take, journal.position, known)) return Missing::kUnknown;
    bool lacks = size < journal.End();
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i] == journal.sound[i] || (isWav && IsSizeField(journal.position + i))) continue;
        if (known[i] != 0) return Missing::kUnjoinable;
        lacks = true;
    }
    return lacks ? Missing::kSound : Missing::kNothing;
}

/// Writes all that the journal holds: a block that the medium refused after it was written may look
/// right as long as the system remembers it.
bool BringIn(StorageFile& take, const TakeJournalContent& journal) {
    std::uint64_t position = 0;
    std::size_t written = 0;
    return take.Seek(journal.position, SeekFrom::kStart, position) == 0 &&
           take.Write(journal.sound, written) == 0 && take.Flush() == 0;
}

/// The take's file; one whose beginning the journal holds is created where it is missing.
std::unique_ptr<StorageFile> OpenTake(Storage& storage, const Text& path,
                                      const TakeJournalContent& journal) {
    if (storage.Exists(path) || journal.position > 0 || !journal.HoldsSound())
        return OpenForPatching(storage, path);
    std::unique_ptr<StorageFile> file;
    OpenMode creating = kPatching;
    creating.disposition = Disposition::kOpenAlways;
    return storage.Open(path, creating, file) == 0 ? std::move(file) : nullptr;
}

bool BringInStagedSound(FileServices files, const Text& audioPath) {
    const std::optional<HeldJournal> journal = HoldJournal(files.storage, audioPath);
    if (!journal || !IsOfKind(audioPath, journal->content.kind)) return false;
    const std::unique_ptr<StorageFile> take = OpenTake(files.storage, audioPath, journal->content);
    FileTime lastWrite;
    if (take == nullptr || LacksSound(*take, journal->content) != Missing::kSound ||
        files.storage.LastWriteTime(audioPath, lastWrite) != 0)
        return false;
    const bool whole = BringIn(*take, journal->content) && take->Close() == 0;
    (void)files.storage.SetLastWriteTime(audioPath, lastWrite);
    Trace("staged sound %s: %s", whole ? "brought in" : "could not be brought in",
          ToUtf8(audioPath).c_str());
    return whole;
}

bool WriteAt(StorageFile& file, std::uint32_t offset, std::uint32_t value) {
    std::array<std::uint8_t, 4> bytes{};
    StoreLe(bytes.data(), value);
    std::uint64_t position = 0;
    std::size_t written = 0;
    return file.Seek(offset, SeekFrom::kStart, position) == 0 && file.Write(bytes, written) == 0;
}

/// True when the file begins with a header of ours that does not fit `length`, the file's bytes.
bool NeedsMending(Storage& storage, const Text& path, std::uint32_t& length) {
    std::unique_ptr<StorageFile> file;
    std::array<std::uint8_t, WavHeader::kBytes> bytes{};
    std::size_t got = 0;
    std::uint64_t size = 0;
    WavHeader header;
    if (storage.Open(path, OpenMode{}, file) != 0 || file->Size(size) != 0 || size > 0xFFFFFFFF ||
        file->Read(bytes, got) != 0 || got < bytes.size() || !WavHeader::Decode(bytes, header))
        return false;
    length = static_cast<std::uint32_t>(size);
    const std::uint32_t dataSize = length - WavHeader::kBytes;
    if (header.dataSize == dataSize && header.riffSize == length - 8) return false;
    // A whole file of another program that has chunks behind its data.
    const bool hasMoreChunks =
        header.riffSize == length - 8 && header.dataSize > 0 && header.dataSize < dataSize;
    return !hasMoreChunks;
}

bool MendHeader(FileServices files, const Text& path) {
    Storage& storage = files.storage;
    std::uint32_t length = 0;
    FileTime lastWrite;
    if (!NeedsMending(storage, path, length) || storage.LastWriteTime(path, lastWrite) != 0)
        return false;
    // A take on a medium that is write-protected, or that is just being recorded, stays as it is;
    // the reader then says why it cannot be read.
    const std::unique_ptr<StorageFile> file = OpenForPatching(storage, path);
    if (file == nullptr) return false;
    const bool mended = WriteAt(*file, WavHeader::kDataSizeOffset, length - WavHeader::kBytes) &&
                        WriteAt(*file, WavHeader::kRiffSizeOffset, length - 8);
    const bool closed = file->Close() == 0;
    (void)storage.SetLastWriteTime(path, lastWrite);
    Trace("take header mended: %s", ToUtf8(path).c_str());
    return mended && closed;
}

}  // namespace

bool RepairTake(FileServices files, const Text& audioPath) {
    if (IsBeingRecorded(files.storage, audioPath)) return false;
    const bool broughtIn = BringInStagedSound(files, audioPath);
    return MendHeader(files, audioPath) || broughtIn;
}

std::optional<TakeJournalContent> ReadTakeJournal(FileServices files, const Text& takePath) {
    std::optional<HeldJournal> journal = HoldJournal(files.storage, takePath);
    if (!journal) return std::nullopt;
    return std::move(journal->content);
}

bool IsBeingRecorded(Storage& storage, const Text& takePath) {
    return IsInUse(storage, JournalPath(takePath));
}

JournalFate DropTakeJournal(FileServices files, const Text& audioPath) {
    if (IsBeingRecorded(files.storage, audioPath)) return JournalFate::kWaits;
    std::optional<HeldJournal> journal = HoldJournal(files.storage, audioPath);
    if (!journal || !IsOfKind(audioPath, journal->content.kind)) return JournalFate::kGone;
    if (journal->content.HoldsSound()) {
        std::unique_ptr<StorageFile> take;
        if (!files.storage.Exists(audioPath)) return JournalFate::kFitsNowhere;
        if (files.storage.Open(audioPath, OpenMode{}, take) != 0) return JournalFate::kWaits;
        const Missing missing = LacksSound(*take, journal->content);
        if (missing == Missing::kUnjoinable) return JournalFate::kFitsNowhere;
        if (missing != Missing::kNothing) return JournalFate::kWaits;
    }
    const SystemError error = files.storage.Delete(JournalPath(audioPath));
    if (error == 0) return JournalFate::kGone;
    Trace("journal of %s not removed: error %u", ToUtf8(audioPath).c_str(), error);
    return JournalFate::kWaits;
}

}  // namespace orma
