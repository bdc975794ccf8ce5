#include <stdexcept>

#include "audio/files/vu_file.h"
#include "cli/describe.h"
#include "cli/level_graph.h"
#include "cli/position.h"

namespace orma::cli {

Json SheetFields(const LevelSheet& sheet) {
    const std::uint32_t rate = PeriodsPerSecond(sheet.resolutionShift);
    Json marks = Json::array();
    for (const std::uint32_t mark : sheet.marks)
        marks.push_back({{"period", mark}, {"time", PositionText(mark, rate)}});
    Json cuts = Json::array();
    for (const RemovedRange& cut : sheet.cuts)
        cuts.push_back({{"begin", cut.begin}, {"end", cut.end}, {"third", cut.third}});
    return {{"range start", sheet.rangeStart},
            {"range end", sheet.rangeEnd},
            {"resolution shift", sheet.resolutionShift},
            {"length", PositionText(static_cast<std::uint32_t>(sheet.levels.size()), rate)},
            {"marks", std::move(marks)},
            {"removed ranges", std::move(cuts)},
            {"levels", sheet.levels}};
}

Json DescribeLevels(Application& app, const Text& path) {
    const auto head = GetVuFileHeader(app.files, path);
    const auto sheet = ReadVuFile(app.files, path);
    if (!head || !sheet) throw std::runtime_error("cannot read the level file " + ToUtf8(path));
    Json fields = {{"kind", "level file"}, {"version", head->version & 0xFFFU}};
    fields.update(SheetFields(*sheet));
    return fields;
}

}  // namespace orma::cli
