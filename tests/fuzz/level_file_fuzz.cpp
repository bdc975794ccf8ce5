// Level files: every reader of them, the lists that editing works on, and the graph.

#include <algorithm>

#include "audio/files/vu_file.h"
#include "cli/level_graph.h"
#include "fuzz/fuzz.h"

namespace orma::test {

// A few sheets and lists of kept stretches, which doubled while they grew; the graph.
const MemoryBudget kMemoryBudget{.fixedBytes = 8 * 1024, .bytesPerInputByte = 16};

namespace {

void TrySheet(const LevelSheet& sheet, std::size_t fileBytes) {
    Require(sheet.levels.size() + 4 * sheet.marks.size() + 12 * sheet.cuts.size() <= fileBytes,
            "no more than the file holds");
    Require(std::ranges::is_sorted(sheet.marks), "marks ascend");
    Require(std::ranges::is_sorted(sheet.cuts, {}, &RemovedRange::begin), "cuts ascend");
    const auto length = static_cast<std::uint32_t>(sheet.levels.size());

    std::uint32_t position = 0;
    std::uint32_t kept = 0;
    for (const PeriodRange& stretch : KeptStretches(sheet.cuts, 0, length)) {
        Require(stretch.begin >= position && stretch.end > stretch.begin && stretch.end <= length,
                "kept stretches ascend within the recording");
        position = stretch.end;
        kept += stretch.end - stretch.begin;
    }
    Require(kept == NetLength(sheet.cuts, 0, length), "the net length counts what is kept");
    (void)NetLength(sheet.cuts, sheet.rangeStart, sheet.rangeEnd);

    const LevelSheet part = SheetOfSelection(sheet, length / 3, length - length / 3);
    Require(part.levels.size() == length - length / 3 - length / 3, "a level for each period");
    (void)cli::LevelGraph(sheet, 76, 12);
    if (length == 0) return;
    const std::optional<LevelSheet> again = DecodeVuFile(EncodeVuFile(sheet));
    Require(again == sheet, "a sheet survives its file");
}

}  // namespace

void TryInput(ByteSpan bytes) {
    const Text path = u"take00.jvu";
    FuzzFiles files(bytes.size());
    files.storage.Put(path, bytes);
    const std::optional<LevelSheet> sheet = DecodeVuFile(bytes);
    Require(sheet == ReadVuFile(files.services, path), "file and bytes read alike");
    Require(GetVuFileHeader(files.services, path).has_value() == sheet.has_value(),
            "the head is refused with the rest");
    const auto marks = GetVuMarks(files.services, path);
    const auto cuts = GetVuRemovedRanges(files.services, path);
    const auto own = GetVuFileData(files.services, path, 0, 0);
    const auto all = GetVuFileData(files.services, path, 0, 0xFFFFFFFF);
    if (!sheet) {
        Require(marks.empty() && cuts.empty() && own.empty() && all.empty(), "nothing on failure");
        return;
    }
    Require(marks == sheet->marks && cuts == sheet->cuts, "the lists are the sheet's");
    Require(own.size() <= sheet->levels.size() && all.size() <= sheet->levels.size(),
            "levels within the recording");
    TrySheet(*sheet, bytes.size());
}

}  // namespace orma::test
