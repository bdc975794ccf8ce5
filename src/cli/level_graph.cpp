#include "cli/level_graph.h"

#include <algorithm>

#include "audio/files/buffer_period.h"
#include "audio/files/level_tables.h"
#include "cli/position.h"

namespace orma::cli {
namespace {

/// Which periods a column stands for.
struct Columns {
    std::size_t periods;
    unsigned count;

    [[nodiscard]] std::size_t Begin(unsigned column) const { return periods * column / count; }
    [[nodiscard]] std::size_t End(unsigned column) const {
        return std::max(periods * (column + 1) / count, Begin(column) + 1);
    }
    [[nodiscard]] unsigned Of(std::size_t period) const {
        const auto column = static_cast<unsigned>((period * count + count - 1) / periods);
        return std::min(column, count - 1);
    }
};

}  // namespace

std::string LevelGraph(const LevelSheet& sheet, unsigned columns, unsigned rows) {
    if (sheet.levels.empty()) return "no levels\n";
    const Columns split{sheet.levels.size(),
                        std::min(columns, static_cast<unsigned>(sheet.levels.size()))};

    std::string graph;
    std::vector<unsigned> heights;
    for (unsigned column = 0; column < split.count; ++column) {
        const auto first = sheet.levels.begin() + static_cast<std::ptrdiff_t>(split.Begin(column));
        const auto last = sheet.levels.begin() +
                          static_cast<std::ptrdiff_t>(std::min(split.End(column), split.periods));
        const unsigned loudest = std::min<unsigned>(*std::min_element(first, last), kQuietLevel);
        heights.push_back((kQuietLevel - loudest) * rows / kQuietLevel);
    }
    for (unsigned row = rows; row > 0; --row) {
        for (const unsigned height : heights)
            graph += height >= row ? '#' : ' ';
        graph += '\n';
    }

    std::string notes(split.count, '-');
    for (const RemovedRange& cut : sheet.cuts) {
        const std::size_t end = std::min<std::size_t>(cut.end, split.periods);
        if (cut.begin >= end) continue;
        const unsigned last = split.Of(end - 1);
        for (unsigned column = split.Of(cut.begin); column <= last; ++column)
            notes[column] = 'x';
    }
    for (const std::uint32_t mark : sheet.marks)
        if (mark < split.periods) notes[split.Of(mark)] = '|';
    graph += notes + '\n';

    const std::uint32_t rate = PeriodsPerSecond(sheet.resolutionShift);
    const std::string length = PositionText(static_cast<std::uint32_t>(split.periods), rate);
    std::string times = "0:00.00";
    if (times.size() + length.size() < split.count)
        times += std::string(split.count - times.size() - length.size(), ' ') + length;
    return graph + times + '\n';
}

}  // namespace orma::cli
