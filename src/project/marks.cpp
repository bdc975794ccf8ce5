#include "project/marks.h"

#include <algorithm>

#include "audio/files/vu_file.h"

namespace orma {

std::size_t FindMark(const LevelSheet& sheet, std::uint32_t position) {
    const auto found = std::ranges::find(sheet.marks, position);
    return static_cast<std::size_t>(found - sheet.marks.begin());
}

bool InsertMark(FileServices services, CurrentRecording& recording, std::uint32_t position) {
    std::vector<std::uint32_t>& marks = recording.sheet.marks;
    if (marks.size() >= LevelSheet::kMaxMarks) return false;
    std::vector<std::uint32_t> before = marks;
    InsertSorted(marks, position);
    if (WriteVuFile(services, recording.levelPath, recording.sheet)) return true;
    marks = std::move(before);
    return false;
}

}  // namespace orma
