#include "audio/files/vu_file.h"

#include <algorithm>
#include <string_view>

#include "audio/files/buffer_period.h"
#include "audio/files/level_tables.h"
#include "base/trace.h"
#include "stream/whole_file.h"

namespace orma {
namespace {

constexpr std::string_view kMagic = "UVOJ";
constexpr std::uint32_t kShiftBytes = 4;

/// The head at the beginning of `bytes`, when they are a level file's.
std::optional<VuFileHead> DecodeHead(ByteSpan bytes) {
    if (bytes.size() < VuFileHead::kOldBytes || !IsTag(bytes.data(), kMagic)) return std::nullopt;
    VuFileHead head;
    head.version = LoadLe<std::uint32_t>(&bytes[4]);
    head.rangeStart = LoadLe<std::uint32_t>(&bytes[8]);
    head.rangeEnd = LoadLe<std::uint32_t>(&bytes[12]);
    head.levelCount = LoadLe<std::uint32_t>(&bytes[16]);
    if (head.HeadBytes() == VuFileHead::kOldBytes) return head;
    if (bytes.size() < VuFileHead::kBytes) return std::nullopt;
    head.markCount = LoadLe<std::uint32_t>(&bytes[20]);
    head.cutCount = LoadLe<std::uint32_t>(&bytes[24]);
    return head;
}

/// Opens a level file and hands over its head, or traces `operation` and reports the file's name.
std::optional<VuFileHead> OpenVuFile(FileServices services, JStreamFile& file, const Text& path,
                                     const char* operation) {
    file.Open(path, true);
    const std::uint32_t size = file.GetSize();
    Bytes bytes(std::min(size, VuFileHead::kBytes));
    file.ReadHeld(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    std::optional<VuFileHead> head;
    if (file.IsOpen()) head = DecodeHead(bytes);
    if (head && head->ContentBytes() <= size) return head;
    Trace("%s", operation);
    services.report.ShowError(path);
    return std::nullopt;
}

std::optional<LevelSheet> LoadSheet(FileServices services, JStreamFile& file, const Text& path,
                                    const char* operation) {
    const std::optional<VuFileHead> head = OpenVuFile(services, file, path, operation);
    if (!head) return std::nullopt;
    Bytes bytes(std::min<std::uint64_t>(file.GetSize(), head->ContentBytes() + kShiftBytes));
    file.SetPosition(0);
    file.ReadHeld(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return file.IsOpen() ? DecodeVuFile(bytes) : std::nullopt;
}

}  // namespace

Bytes EncodeVuFile(const LevelSheet& sheet) {
    if (sheet.levels.empty()) return {};
    VuFileHead head;
    head.rangeStart = sheet.rangeStart;
    head.rangeEnd = sheet.rangeEnd;
    head.levelCount = static_cast<std::uint32_t>(sheet.levels.size());
    head.markCount = static_cast<std::uint32_t>(sheet.marks.size());
    head.cutCount = static_cast<std::uint32_t>(sheet.cuts.size());

    Bytes bytes(static_cast<std::size_t>(head.ContentBytes()) + kShiftBytes);
    StoreTag(bytes.data(), kMagic);
    std::uint8_t* to = &bytes[4];
    const auto put = [&to](std::uint32_t value) {
        StoreLe(to, value);
        to += 4;
    };
    for (const std::uint32_t field : {head.version, head.rangeStart, head.rangeEnd, head.levelCount,
                                      head.markCount, head.cutCount})
        put(field);
    for (const std::uint32_t mark : sheet.marks)
        put(mark);
    for (const RemovedRange& cut : sheet.cuts) {
        put(cut.begin);
        put(cut.end);
        put(cut.third);
    }
    to = std::ranges::copy(sheet.levels, to).out;
    put(sheet.resolutionShift);
    return bytes;
}

std::optional<LevelSheet> DecodeVuFile(ByteSpan file) {
    const std::optional<VuFileHead> head = DecodeHead(file);
    if (!head || head->ContentBytes() > file.size()) return std::nullopt;

    LevelSheet sheet;
    sheet.rangeStart = head->rangeStart;
    sheet.rangeEnd = head->rangeEnd;
    const std::uint8_t* from = file.data() + head->HeadBytes();
    const auto take = [&from] {
        const auto value = LoadLe<std::uint32_t>(from);
        from += 4;
        return value;
    };
    sheet.marks.resize(head->markCount);
    std::ranges::generate(sheet.marks, take);
    sheet.cuts.resize(head->cutCount);
    for (RemovedRange& cut : sheet.cuts)
        cut = {take(), take(), take()};
    sheet.levels.assign(from, from + head->levelCount);
    from += head->levelCount;
    if (file.size() >= head->ContentBytes() + kShiftBytes) {
        const std::uint32_t shift = take();
        if (shift <= kLargestShift) sheet.resolutionShift = shift;
    }
    // Files from elsewhere may stand out of order; everybody who walks the lists relies on it.
    std::ranges::sort(sheet.marks);
    std::ranges::stable_sort(sheet.cuts, {}, &RemovedRange::begin);
    return sheet;
}

bool WriteVuFile(FileServices services, const Text& path, const LevelSheet& sheet) {
    const Bytes bytes = EncodeVuFile(sheet);
    return bytes.empty() || ReplaceWholeFile(services, path, bytes);
}

LevelSheet SheetOfSelection(const LevelSheet& sheet, std::uint32_t begin, std::uint32_t end) {
    LevelSheet part;
    part.resolutionShift = sheet.resolutionShift;
    if (begin >= end) return part;
    part.rangeEnd = end - begin;
    for (const std::uint32_t mark : sheet.marks) {
        if (mark > begin && mark < end) part.marks.push_back(mark - begin);
    }
    for (const RemovedRange& cut : sheet.cuts) {
        if (cut.begin > begin && cut.end < end)
            part.cuts.push_back({cut.begin - begin, cut.end - begin, cut.third});
    }
    if (sheet.levels.empty()) return part;
    const std::size_t known = sheet.levels.size();
    const auto levels = sheet.levels.begin();
    part.levels.assign(levels + static_cast<std::ptrdiff_t>(std::min<std::size_t>(begin, known)),
                       levels + static_cast<std::ptrdiff_t>(std::min<std::size_t>(end, known)));
    part.levels.resize(end - begin, kQuietLevel);
    return part;
}

bool WriteVuFileForSelection(FileServices services, const Text& path, const LevelSheet& sheet,
                             std::uint32_t begin, std::uint32_t end) {
    return WriteVuFile(services, path, SheetOfSelection(sheet, begin, end));
}

std::optional<VuFileHead> GetVuFileHeader(FileServices services, const Text& path) {
    JStreamFile file(services);
    return OpenVuFile(services, file, path, "GetVuFileHeader");
}

std::vector<std::uint8_t> GetVuFileData(FileServices services, const Text& path,
                                        std::uint32_t begin, std::uint32_t end) {
    JStreamFile file(services);
    const std::optional<LevelSheet> sheet =
        LoadSheet(services, file, path, "GetVuFileHeader in GetVuFileData");
    if (!sheet) return {};
    if (begin == 0 && end == 0) {
        begin = sheet->rangeStart;
        end = sheet->rangeEnd;
    }
    end = static_cast<std::uint32_t>(std::min<std::size_t>(end, sheet->levels.size()));
    std::vector<std::uint8_t> levels;
    for (const PeriodRange& kept : KeptStretches(sheet->cuts, begin, end)) {
        const auto from = sheet->levels.begin();
        levels.insert(levels.end(), from + kept.begin, from + kept.end);
    }
    return levels;
}

std::vector<std::uint32_t> GetVuMarks(FileServices services, const Text& path) {
    const std::optional<LevelSheet> sheet = ReadVuFile(services, path);
    return sheet ? sheet->marks : std::vector<std::uint32_t>();
}

std::vector<RemovedRange> GetVuRemovedRanges(FileServices services, const Text& path) {
    const std::optional<LevelSheet> sheet = ReadVuFile(services, path);
    return sheet ? sheet->cuts : std::vector<RemovedRange>();
}

std::optional<LevelSheet> ReadVuFile(FileServices services, const Text& path) {
    JStreamFile file(services);
    return LoadSheet(services, file, path, "GetVuFileHeader");
}

std::optional<LevelSheet> ReadLevelsBeside(FileServices services, const Text& path) {
    if (!services.storage.Exists(path)) return LevelSheet{};
    JStreamFile file(services);
    std::optional<LevelSheet> sheet = LoadSheet(services, file, path, "GetVuFileHeader");
    if (sheet || !file.Has(JStream::kGood)) return sheet;
    return LevelSheet{};
}

}  // namespace orma
