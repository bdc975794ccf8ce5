#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/bytes.h"
#include "stream/jstream_file.h"

namespace orma {

/// What a journal knows of its take.
struct TakeJournalContent {
    std::uint32_t position = 0;   // where in the take's file `sound` belongs, in bytes
    Bytes sound;                  // possibly not in the take yet; empty also when it is damaged
    std::uint32_t unitBytes = 1;  // of a sample of all channels, or of an MP2 frame
    unsigned resolutionShift = 2;
    std::vector<std::uint32_t> marks;  // set while recording, in buffer periods, ascending

    [[nodiscard]] std::uint32_t End() const {
        return position + static_cast<std::uint32_t>(sound.size());
    }
};

/// Reads a journal's bytes, see docs/formats.md; nothing when they are none of ours.
[[nodiscard]] std::optional<TakeJournalContent> DecodeTakeJournal(ByteSpan file);

/// The journal of a take: a small mapped file beside it ("name00.rec") that holds what a crash
/// would take, the sound that is still staged in memory and the marks. It lies there from before
/// the take is created until its clip stands in the project file, so a take with a journal is one
/// that was interrupted, or is just being recorded: then other openers are refused.
///
/// Stored to memory alone, without calls into the system: what Append got is safe from the end of
/// the process. Without a journal (the medium cannot map, or is full) all operations do nothing;
/// the take goes on all the same. UI thread.
class TakeJournal {
  public:
    static constexpr TextView kExtension = u".rec";

    struct Format {
        std::uint32_t blockBytes;  // the staging writes blocks of so many bytes
        std::uint32_t unitBytes;
        unsigned resolutionShift;
    };

    /// Starts the journal of the take at `takePath`, whose file has `position` bytes. A failure is
    /// traced.
    void Start(FileServices files, const Text& takePath, const Format& format,
               std::uint32_t position);

    /// Keeps sound that the take's file does not hold yet. When a block cannot be written there is
    /// room for three more of its size; further sound is let go.
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
    void StorePlace(std::size_t offset, std::uint32_t position, std::uint32_t hash);

    Storage* storage_ = nullptr;
    Text path_;
    std::unique_ptr<MappedFile> file_;
    std::uint32_t ringBytes_ = 0;
    std::uint32_t written_ = 0;  // position in the take up to which its file has the sound
    std::uint32_t writtenHash_ = 0;
    std::uint32_t staged_ = 0;  // ... and up to which the journal has it
    std::uint32_t stagedHash_ = 0;
    std::uint32_t markCount_ = 0;
    bool full_ = false;  // sound was let go: what came later would not follow what is kept
};

}  // namespace orma
