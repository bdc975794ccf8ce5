#pragma once

#include <optional>

#include "audio/files/level_sheet.h"
#include "base/bytes.h"
#include "stream/jstream_file.h"

namespace orma {

/// The head of a level file (".jvu"), little-endian.
struct VuFileHead {
    static constexpr std::uint32_t kVersion = 3;
    static constexpr std::uint32_t kOldBytes = 20;  // versions below 2 lack the two counts
    static constexpr std::uint32_t kBytes = 28;

    std::uint32_t version = kVersion;  // only the low 12 bits count
    std::uint32_t rangeStart = 0;
    std::uint32_t rangeEnd = 0;
    std::uint32_t levelCount = 0;
    std::uint32_t markCount = 0;
    std::uint32_t cutCount = 0;

    [[nodiscard]] std::uint32_t HeadBytes() const {
        return (version & 0xFFFU) < 2 ? kOldBytes : kBytes;
    }

    /// Bytes of the file without the resolution shift at its end.
    [[nodiscard]] std::uint64_t ContentBytes() const {
        return HeadBytes() + 4 * std::uint64_t{markCount} + 12 * std::uint64_t{cutCount} +
               levelCount;
    }
};

/// The whole level file of a recording as bytes; nothing when there is no level byte.
[[nodiscard]] Bytes EncodeVuFile(const LevelSheet& sheet);

/// Reads a whole level file; nothing when the magic is wrong or the counts exceed the bytes. Marks
/// and cuts come out ascending; a missing or impossible resolution shift is taken as 2.
[[nodiscard]] std::optional<LevelSheet> DecodeVuFile(ByteSpan file);

/// Writes the level file at `path` from the sheet, only when at least one level byte exists.
/// Replaces an older file whole or not at all. False on failure (reported).
[[nodiscard]] bool WriteVuFile(FileServices services, const Text& path, const LevelSheet& sheet);

/// The part of a sheet inside the selection [begin, end): marks and cuts that lie strictly inside
/// (those that touch an edge are dropped), and the levels, all counted from `begin`. Periods whose
/// level the sheet does not know get the quietest, so that there is one level a period.
[[nodiscard]] LevelSheet SheetOfSelection(const LevelSheet& sheet, std::uint32_t begin,
                                          std::uint32_t end);

/// Writes the level file of a selection [begin, end) of `sheet` at `path`.
[[nodiscard]] bool WriteVuFileForSelection(FileServices services, const Text& path,
                                           const LevelSheet& sheet, std::uint32_t begin,
                                           std::uint32_t end);

/// Reads a level file's head; nothing (traced, the file's name reported) when it cannot be opened
/// or is none.
[[nodiscard]] std::optional<VuFileHead> GetVuFileHeader(FileServices services, const Text& path);

/// The level bytes of [begin, end) (both 0: the head's range) with the removed stretches left out;
/// at most what the file holds, and empty on error.
[[nodiscard]] std::vector<std::uint8_t> GetVuFileData(FileServices services, const Text& path,
                                                      std::uint32_t begin, std::uint32_t end);

/// The marks of a level file; empty on error.
[[nodiscard]] std::vector<std::uint32_t> GetVuMarks(FileServices services, const Text& path);

/// The removed ranges of a level file; empty on error.
[[nodiscard]] std::vector<RemovedRange> GetVuRemovedRanges(FileServices services, const Text& path);

/// The whole sheet of a level file; nothing on error (reported as GetVuFileHeader does).
[[nodiscard]] std::optional<LevelSheet> ReadVuFile(FileServices services, const Text& path);

/// What is known of a recording from the level file beside it: an empty sheet when there is none or
/// it is damaged (reported). Nothing when it is there and cannot be read (reported): it may hold
/// cuts and marks, so nobody may go on as if there were none.
[[nodiscard]] std::optional<LevelSheet> ReadLevelsBeside(FileServices services, const Text& path);

}  // namespace orma
