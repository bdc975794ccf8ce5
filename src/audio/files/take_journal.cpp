#include "audio/files/take_journal.h"

#include <algorithm>
#include <atomic>
#include <bit>

#include "audio/files/level_sheet.h"
#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::string_view kMagic = "OREC";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kRingBytesOffset = 8;
constexpr std::size_t kUnitBytesOffset = 12;
constexpr std::size_t kWrittenOffset = 16;  // u32 position, u32 hash: one atomic store
constexpr std::size_t kStagedOffset = 24;   // likewise
constexpr std::size_t kMarkCountOffset = 32;
constexpr std::size_t kShiftOffset = 36;
constexpr std::size_t kMarksOffset = 64;
constexpr std::size_t kRingOffset = 4096;
static_assert(kMarksOffset + 4 * LevelSheet::kMaxMarks <= kRingOffset);

constexpr std::uint32_t kBlocksInRing = 4;
constexpr std::uint32_t kMostRingBytes = 1U << 20;
constexpr std::uint32_t kMostUnitBytes = 4096;
constexpr unsigned kMostShift = 2;

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

struct Place {
    std::uint32_t position;
    std::uint32_t hash;
};

Place LoadPlace(ByteSpan file, std::size_t offset) {
    return {LoadLe<std::uint32_t>(&file[offset]), LoadLe<std::uint32_t>(&file[offset + 4])};
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
    TakeJournalContent content;
    content.unitBytes = LoadLe<std::uint32_t>(&file[kUnitBytesOffset]);
    content.resolutionShift = LoadLe<std::uint32_t>(&file[kShiftOffset]);
    if (!std::has_single_bit(ringBytes) || ringBytes != file.size() - kRingOffset ||
        content.unitBytes == 0 || content.unitBytes > kMostUnitBytes ||
        content.resolutionShift > kMostShift)
        return std::nullopt;
    content.marks = LoadMarks(file);

    const Place written = LoadPlace(file, kWrittenOffset);
    const Place staged = LoadPlace(file, kStagedOffset);
    content.position = written.position;
    if (staged.position < written.position || staged.position - written.position > ringBytes)
        return content;
    const auto [first, second] =
        InRing(file.subspan(kRingOffset), written.position, staged.position - written.position);
    if (Hash(Hash(written.hash, first), second) != staged.hash) return content;
    content.sound.assign(first.begin(), first.end());
    content.sound.insert(content.sound.end(), second.begin(), second.end());
    return content;
}

void TakeJournal::Start(FileServices files, const Text& takePath, const Format& format,
                        std::uint32_t position) {
    storage_ = &files.storage;
    path_ = WithExtension(takePath, kExtension);
    ringBytes_ = std::min(std::bit_ceil(format.blockBytes * kBlocksInRing), kMostRingBytes);
    if (const SystemError error = files.storage.Map(path_, kRingOffset + ringBytes_, file_);
        error != 0) {
        Trace("no journal for %s: error %u", ToUtf8(takePath).c_str(), error);
        file_.reset();
        return;
    }
    written_ = staged_ = position;
    writtenHash_ = stagedHash_ = kHashStart;
    markCount_ = 0;
    full_ = false;
    std::uint8_t* const head = file_->Bytes().data();
    StoreLe(head + 4, kVersion);
    StoreLe(head + kRingBytesOffset, ringBytes_);
    StoreLe(head + kUnitBytesOffset, format.unitBytes);
    StoreLe(head + kShiftOffset, std::uint32_t{format.resolutionShift});
    StorePlace(kWrittenOffset, written_, writtenHash_);
    StorePlace(kStagedOffset, staged_, stagedHash_);
    StoreTag(head, kMagic);
}

/// One store, so that a kill finds either the old place or the new one; and only after the bytes
/// that it stands for.
void TakeJournal::StorePlace(std::size_t offset, std::uint32_t position, std::uint32_t hash) {
    auto& word = *reinterpret_cast<std::uint64_t*>(file_->Bytes().data() + offset);
    std::atomic_ref(word).store(std::uint64_t{hash} << 32 | position, std::memory_order_release);
}

void TakeJournal::Append(ByteSpan sound) {
    full_ = full_ || sound.size() > ringBytes_ - (staged_ - written_);
    if (file_ == nullptr || full_) return;
    const auto [first, second] = InRing(file_->Bytes().subspan(kRingOffset), staged_, sound.size());
    std::ranges::copy(sound.first(first.size()), first.begin());
    std::ranges::copy(sound.subspan(first.size()), second.begin());
    staged_ += static_cast<std::uint32_t>(sound.size());
    stagedHash_ = Hash(stagedHash_, sound);
    StorePlace(kStagedOffset, staged_, stagedHash_);
}

void TakeJournal::BlockWritten(std::uint32_t bytes) {
    if (file_ == nullptr) return;
    bytes = std::min(bytes, staged_ - written_);
    const auto [first, second] = InRing(file_->Bytes().subspan(kRingOffset), written_, bytes);
    writtenHash_ = Hash(Hash(writtenHash_, first), second);
    written_ += bytes;
    StorePlace(kWrittenOffset, written_, writtenHash_);
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
    file_.reset();
    (void)storage_->Delete(path_);
}

}  // namespace orma
