#include "audio/files/take_repair.h"

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

Text JournalPath(const Text& audioPath) {
    return WithExtension(audioPath, TakeJournal::kExtension);
}

/// A journal and the file that keeps others from it.
struct HeldJournal {
    std::unique_ptr<StorageFile> file;
    std::optional<TakeJournalContent> content;  // nothing: damaged
};

/// Nothing when there is no journal or it is in use.
std::optional<HeldJournal> HoldJournal(Storage& storage, const Text& audioPath) {
    HeldJournal held{OpenForPatching(storage, JournalPath(audioPath)), {}};
    std::uint64_t size = 0;
    if (held.file == nullptr || held.file->Size(size) != 0) return std::nullopt;
    if (size > kLargestJournal) return held;
    Bytes bytes(static_cast<std::size_t>(size));
    std::size_t got = 0;
    if (held.file->Read(bytes, got) != 0) return std::nullopt;
    held.content = DecodeTakeJournal(ByteSpan(bytes).first(got));
    return held;
}

bool LacksSound(const TakeJournalContent& journal, std::uint64_t takeBytes) {
    return !journal.sound.empty() && takeBytes < journal.End();
}

bool WriteSoundAt(StorageFile& take, std::uint64_t place, ByteSpan sound) {
    std::uint64_t position = 0;
    std::size_t written = 0;
    return take.Seek(static_cast<std::int64_t>(place), SeekFrom::kStart, position) == 0 &&
           take.Write(sound, written) == 0;
}

/// Writes the journal's sound to its place. Where the take ends before that place, because a power
/// cut took what lay between, it goes behind what is there, samples and frames kept whole.
bool BringIn(StorageFile& take, std::uint64_t takeBytes, const TakeJournalContent& journal) {
    std::uint64_t place = journal.position;
    if (takeBytes < place) {
        const Bytes padding((place - takeBytes) % journal.unitBytes);
        if (!WriteSoundAt(take, takeBytes, padding)) return false;
        place = takeBytes + padding.size();
    }
    return WriteSoundAt(take, place, journal.sound) && take.Flush() == 0;
}

bool BringInStagedSound(FileServices files, const Text& audioPath) {
    const std::optional<HeldJournal> journal = HoldJournal(files.storage, audioPath);
    if (!journal || !journal->content) return false;
    const std::unique_ptr<StorageFile> take = OpenForPatching(files.storage, audioPath);
    std::uint64_t size = 0;
    FileTime lastWrite;
    if (take == nullptr || take->Size(size) != 0 || size == 0 ||
        !LacksSound(*journal->content, size) ||
        files.storage.LastWriteTime(audioPath, lastWrite) != 0)
        return false;
    const bool whole = BringIn(*take, size, *journal->content) && take->Close() == 0;
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
    const bool broughtIn = BringInStagedSound(files, audioPath);
    return MendHeader(files, audioPath) || broughtIn;
}

std::optional<TakeJournalContent> ReadTakeJournal(FileServices files, const Text& audioPath) {
    std::optional<HeldJournal> journal = HoldJournal(files.storage, audioPath);
    if (!journal) return std::nullopt;
    return std::move(journal->content);
}

bool IsBeingRecorded(Storage& storage, const Text& audioPath) {
    const Text path = JournalPath(audioPath);
    return storage.Exists(path) && OpenForPatching(storage, path) == nullptr;
}

void DropTakeJournal(FileServices files, const Text& audioPath) {
    std::optional<HeldJournal> journal = HoldJournal(files.storage, audioPath);
    if (!journal) return;
    std::unique_ptr<StorageFile> take;
    std::uint64_t size = 0;
    const bool known =
        !files.storage.Exists(audioPath) ||
        (files.storage.Open(audioPath, OpenMode{}, take) == 0 && take->Size(size) == 0);
    if (journal->content && (!known || LacksSound(*journal->content, size))) return;
    if (const SystemError error = files.storage.Delete(JournalPath(audioPath)); error != 0)
        Trace("journal of %s not removed: error %u", ToUtf8(audioPath).c_str(), error);
}

}  // namespace orma
