#include "audio/files/level_tables.h"

#include <algorithm>
#include <cmath>

namespace orma {
namespace {

std::uint8_t LevelOfIndex(std::size_t index) {
    if (index == 0) return kQuietLevel;
    const double db = 20.0 * std::log10(static_cast<double>(index) / 511.0);
    double steps = 0.0;
    if (db >= -10.0) {
        steps = -3.0 * db;
    } else if (db >= -30.0) {
        steps = 15.0 - 1.5 * db;
    } else {
        steps = 30.0 - db;
    }
    return static_cast<std::uint8_t>(std::min(std::lround(steps), long{kQuietLevel}));
}

LevelTables BuildLevelTables() {
    LevelTables tables;
    for (std::size_t i = 0; i < tables.level.size(); ++i) {
        tables.level[i] = LevelOfIndex(i);
        tables.peak[tables.level[i]] = static_cast<std::uint8_t>(i >> 1);
    }
    tables.peak[kQuietLevel] = 0;
    return tables;
}

}  // namespace

const LevelTables& Levels() {
    static const LevelTables tables = BuildLevelTables();
    return tables;
}

std::uint8_t LevelOfPeak(std::uint32_t peak) {
    const LevelTables& tables = Levels();
    return tables.level[std::min<std::size_t>(peak >> 6, tables.level.size() - 1)];
}

}  // namespace orma
