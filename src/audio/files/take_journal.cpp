#include "audio/files/take_journal.h"

#include <algorithm>
#include <atomic>
#include <bit>

#include "audio/files/buffer_period.h"
#include "audio/files/level_sheet.h"
#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::string_view kMagic = "OREC";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kRingBytesOffset = 8;
constexpr std::size_t kKindOffset = 12;
// A place is a position and a hash, u32 each, in one atomic store.
constexpr std::size_t kWrittenOffset = 16;
constexpr std::size_t kStagedOffset = 24;
constexpr std::size_t kOlderOffset = 32;  // three places
constexpr std::size_t kShiftOffset = 56;
constexpr std::size_t kNameOffset = 60;
constexpr std::size_t kMarkCountOffset = 64;
constexpr std::size_t kMarksOffset = 128;
constexpr std::size_t kRingOffset = 8192;
static_assert(kMarksOffset + 4 * LevelSheet::kMaxMarks <= kRingOffset);

constexpr std::uint32_t kBlocksInRing = 4;
constexpr std::uint32_t kMostRingBytes = 1U << 20;

constexpr std::uint32_t kHashStart = 2166136261;

/// FNV-1a: after a power cut parts of a journal may be older than others.
std::uint32_t Hash(std::uint32_t hash, ByteSpan bytes) {
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * 16777619U;
    return hash;
}

/// The up to two stretches of the ring in which [position, position + bytes) of the take lies.
template <class Span>
std::pair<Span, Span> InRing(Span ring, std::uint32_t position, std::size_t bytes) {
    const std::size_t at = position & (ring.size() - 1);
    const std::size_t first = std::min(bytes, ring.size() - at);
    return {ring.subspan(at, first), ring.first(bytes - first)};
}

std::vector<std::uint32_t> LoadMarks(ByteSpan file) {
    const std::size_t count = std::min<std::size_t>(LoadLe<std::uint32_t>(&file[kMarkCountOffset]),
                                                    LevelSheet::kMaxMarks);
    std::vector<std::uint32_t> marks(count);
    for (std::size_t i = 0; i < count; ++i)
        marks[i] = LoadLe<std::uint32_t>(&file[kMarksOffset + 4 * i]);
    std::ranges::sort(marks);
    return marks;
}

}  // namespace

std::optional<TakeJournalContent> DecodeTakeJournal(ByteSpan file) {
    if (file.size() < kRingOffset || !IsTag(file.data(), kMagic) ||
        LoadLe<std::uint32_t>(&file[4]) != kVersion)
        return std::nullopt;
    const auto ringBytes = LoadLe<std::uint32_t>(&file[kRingBytesOffset]);
    const auto kind = LoadLe<std::uint32_t>(&file[kKindOffset]);
    TakeJournalContent content;
    content.kind = static_cast<TakeKind>(kind);
    content.resolutionShift = LoadLe<std::uint32_t>(&file[kShiftOffset]);
    content.projectNameUnits = LoadLe<std::uint32_t>(&file[kNameOffset]);
    if (!std::has_single_bit(ringBytes) || ringBytes != file.size() - kRingOffset || kind < 1 ||
        kind > 2 || content.resolutionShift > kLargestShift)
        return std::nullopt;
    content.marks = LoadMarks(file);

    const auto position = [&](std::size_t place) { return LoadLe<std::uint32_t>(&file[place]); };
    const auto hash = [&](std::size_t place) { return LoadLe<std::uint32_t>(&file[place + 4]); };
    const std::uint32_t end = position(kStagedOffset);
    const std::uint32_t written = position(kWrittenOffset);
    content.position = written;
    // The sound from the earliest place on from which everything fits together.
    for (const std::size_t place :
         {kOlderOffset + 16, kOlderOffset + 8, kOlderOffset, kWrittenOffset}) {
        const std::uint32_t begin = position(place);
        if (begin > written || written > end || end - begin > ringBytes) continue;
        const auto [first, second] = InRing(file.subspan(kRingOffset), begin, end - begin);
        if (Hash(Hash(hash(place), first), second) != hash(kStagedOffset)) continue;
        content.position = begin;
        content.sound.assign(first.begin(), first.end());
        content.sound.insert(content.sound.end(), second.begin(), second.end());
        break;
    }
    return content;
}

bool TakeJournal::Start(FileServices files, const Text& takePath, const Format& format,
                        std::uint32_t position) {
    storage_ = &files.storage;
    path_ = WithExtension(takePath, kExtension);
    file_.reset();
    if (files.storage.Exists(path_)) return false;
    ringBytes_ = std::min(std::bit_ceil(format.blockBytes * kBlocksInRing), kMostRingBytes);
    // It gets its name once it is one: whatever bears that name is whole.
    const Text newPath = path_ + u".tmp";
    if (const SystemError error = files.storage.Map(newPath, kRingOffset + ringBytes_, file_);
        error != 0) {
        Trace("no journal for %s: error %u", ToUtf8(takePath).c_str(), error);
        file_.reset();
        return !IsInUse(files.storage, newPath);
    }
    staged_ = written_ = {position, kHashStart};
    older_.fill(written_);
    markCount_ = 0;
    full_ = false;
    std::uint8_t* const head = file_->Bytes().data();
    StoreLe(head + 4, kVersion);
    StoreLe(head + kRingBytesOffset, ringBytes_);
    StoreLe(head + kKindOffset, static_cast<std::uint32_t>(format.kind));
    StoreLe(head + kShiftOffset, std::uint32_t{format.resolutionShift});
    StoreLe(head + kNameOffset, format.projectNameUnits);
    for (const std::size_t offset :
         {kStagedOffset, kWrittenOffset, kOlderOffset, kOlderOffset + 8, kOlderOffset + 16})
        StorePlace(offset, written_);
    StoreTag(head, kMagic);
    if (const SystemError error = files.storage.Rename(newPath, path_); error != 0) {
        Trace("no journal for %s: error %u", ToUtf8(takePath).c_str(), error);
        (void)files.storage.Delete(newPath);
        file_.reset();
    }
    return true;
}

/// One store, so that a kill finds either the old place or the new one; and only after the bytes
/// that it stands for.
void TakeJournal::StorePlace(std::size_t offset, Place place) {
    auto& word = *reinterpret_cast<std::uint64_t*>(file_->Bytes().data() + offset);
    std::atomic_ref(word).store(std::uint64_t{place.hash} << 32 | place.position,
                                std::memory_order_release);
}

void TakeJournal::Append(ByteSpan sound) {
    full_ = full_ || sound.size() > ringBytes_ - (staged_.position - written_.position);
    if (file_ == nullptr || full_) return;
    const auto [first, second] =
        InRing(file_->Bytes().subspan(kRingOffset), staged_.position, sound.size());
    std::ranges::copy(sound.first(first.size()), first.begin());
    std::ranges::copy(sound.subspan(first.size()), second.begin());
    staged_ = {staged_.position + static_cast<std::uint32_t>(sound.size()),
               Hash(staged_.hash, sound)};
    StorePlace(kStagedOffset, staged_);
}

void TakeJournal::BlockWritten(std::uint32_t bytes) {
    if (file_ == nullptr) return;
    bytes = std::min(bytes, staged_.position - written_.position);
    const auto [first, second] =
        InRing(file_->Bytes().subspan(kRingOffset), written_.position, bytes);
    std::shift_right(older_.begin(), older_.end(), 1);
    older_[0] = written_;
    written_ = {written_.position + bytes, Hash(Hash(written_.hash, first), second)};
    for (std::size_t i = older_.size(); i-- > 0;)
        StorePlace(kOlderOffset + 8 * i, older_[i]);
    StorePlace(kWrittenOffset, written_);
}

void TakeJournal::AddMark(std::uint32_t period) {
    if (file_ == nullptr || markCount_ >= LevelSheet::kMaxMarks) return;
    std::uint8_t* const head = file_->Bytes().data();
    StoreLe(head + kMarksOffset + 4 * std::size_t{markCount_}, period);
    ++markCount_;
    auto& count = *reinterpret_cast<std::uint32_t*>(head + kMarkCountOffset);
    std::atomic_ref(count).store(markCount_, std::memory_order_release);
}

void TakeJournal::BeginFlush() {
    if (file_ != nullptr) file_->BeginFlush();
}

void TakeJournal::Discard() {
    if (file_ == nullptr) return;
    (void)storage_->Delete(path_);  // while it is locked, so that it is this one
    file_.reset();
}

bool IsInUse(Storage& storage, const Text& journalPath) {
    std::unique_ptr<StorageFile> file;
    return storage.Exists(journalPath) &&
           storage.Open(journalPath, {.access = Access::kReadWrite}, file) != 0;
}

}  // namespace orma
