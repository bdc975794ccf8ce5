#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "audio/files/wav_header.h"
#include "base/bytes.h"
#include "stream/jstream_file.h"

namespace orma {

enum class TakeKind : std::uint32_t { kWav = 1, kMp2 = 2 };

/// What a journal knows of its take.
struct TakeJournalContent {
    TakeKind kind = TakeKind::kWav;
    std::uint32_t position = 0;  // where in the take's file `sound` belongs, in bytes
    Bytes sound;                 // empty also when it is damaged
    unsigned resolutionShift = 2;
    std::uint32_t projectNameUnits = 0;  // UTF-16 units of the take's name before its number
    std::vector<std::uint32_t> marks;    // set while recording, in buffer periods, ascending

    [[nodiscard]] std::uint32_t End() const {
        return position + static_cast<std::uint32_t>(sound.size());
    }

    /// False when the take had nothing but its header.
    [[nodiscard]] bool HoldsSound() const {
        return !sound.empty() && End() > (kind == TakeKind::kWav ? WavHeader::kBytes : 0);
    }
};

/// Reads a journal's bytes, see docs/formats.md; nothing when they are none of ours.
[[nodiscard]] std::optional<TakeJournalContent> DecodeTakeJournal(ByteSpan file);

/// True when a journal is there and cannot be opened for writing: a recording holds it, here or
/// elsewhere, or the medium does not allow it.
[[nodiscard]] bool IsInUse(Storage& storage, const Text& journalPath);

/// The journal of a take: a small mapped file beside it ("name00.rec") that holds what a crash
/// would take, the sound that is still staged in memory and the marks; and the blocks before, for a
/// power cut that took them from the take. It lies there until the take's clip stands in the
/// project file, so a take with a journal is one that was interrupted, or is just being recorded:
/// then other openers are refused.
///
/// What Append got is safe from the end of the process, without a call. Without a journal (the
/// medium cannot map, or is full) all operations do nothing; the take goes on all the same. UI
/// thread.
class TakeJournal {
  public:
    static constexpr TextView kExtension = u".rec";

    struct Format {
        TakeKind kind = TakeKind::kWav;
        std::uint32_t blockBytes = 0;  // the staging writes blocks of so many bytes
        unsigned resolutionShift = 2;
        std::uint32_t projectNameUnits = 0;
    };

    /// Starts the journal of the take at `takePath`, whose file has `position` bytes. False when
    /// there is one already: the take is being recorded by somebody else. Any other failure is
    /// traced alone.
    [[nodiscard]] bool Start(FileServices files, const Text& takePath, const Format& format,
                             std::uint32_t position);

    /// Keeps what is to be written to the take's file next, its header included. When a block
    /// cannot be written there is room for three more of its size; further sound is let go.
    void Append(ByteSpan sound);

    /// The take's file has `bytes` more of what was appended.
    void BlockWritten(std::uint32_t bytes);

    /// Keeps a mark, in buffer periods; at most as many as a level file holds.
    void AddMark(std::uint32_t period);

    /// Starts to bring the journal to the medium, against a power cut; returns at once.
    void BeginFlush();

    /// Lets go of the file, which stays.
    void Close() { file_.reset(); }

    /// Removes the file: the take was never created.
    void Discard();

  private:
    struct Place {
        std::uint32_t position = 0;
        std::uint32_t hash = 0;
    };
    static constexpr std::size_t kOlderPlaces = 3;

    void StorePlace(std::size_t offset, Place place);

    Storage* storage_ = nullptr;
    Text path_;
    std::unique_ptr<MappedFile> file_;
    std::uint32_t ringBytes_ = 0;
    Place staged_;                           // up to where the journal has the sound
    Place written_;                          // ... and the take's file
    std::array<Place, kOlderPlaces> older_;  // before the last blocks, latest first
    std::uint32_t markCount_ = 0;
    bool full_ = false;  // sound was let go: what came later would not follow what is kept
};

}  // namespace orma
