#include "cli/level_line.h"

#include <algorithm>

#include "audio/files/level_tables.h"
#include "base/text.h"
#include "cli/position.h"

namespace orma::cli {
namespace {

constexpr unsigned kBarWidth = 40;

std::string HoursMinutes(std::uint32_t seconds) {
    return Format("%uh:%02um", seconds / 3600, seconds % 3600 / 60);
}

}  // namespace

std::string LevelLine(bool saving, std::uint32_t savedPeriods, std::uint32_t periodsLeft,
                      std::uint32_t periodsPerSecond, std::uint8_t level, std::size_t marks) {
    const unsigned quiet = std::min<unsigned>(level, kQuietLevel);
    const unsigned lit = (kQuietLevel - quiet) * kBarWidth / kQuietLevel;
    const std::string bar = std::string(lit, '#') + std::string(kBarWidth - lit, '.');
    std::string line = Format("%s %8s  [%s]  %s left", saving ? "REC " : "wait",
                              PositionText(savedPeriods, periodsPerSecond).c_str(), bar.c_str(),
                              HoursMinutes(periodsLeft / periodsPerSecond).c_str());
    if (marks > 0) line += Format("  marks %zu", marks);
    return line;
}

}  // namespace orma::cli
