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

std::string LevelBar(std::uint8_t level) {
    const unsigned quiet = std::min<unsigned>(level, kQuietLevel);
    const unsigned lit = (kQuietLevel - quiet) * kBarWidth / kQuietLevel;
    return std::string(lit, '#') + std::string(kBarWidth - lit, '.');
}

}  // namespace

std::string LevelLine(bool saving, std::uint32_t savedPeriods, std::uint32_t periodsLeft,
                      std::uint32_t periodsPerSecond, std::uint8_t level, std::size_t marks) {
    std::string line =
        Format("%s %8s  [%s]  %s left", saving ? "REC " : "wait",
               PositionText(savedPeriods, periodsPerSecond).c_str(), LevelBar(level).c_str(),
               HoursMinutes(periodsLeft / periodsPerSecond).c_str());
    if (marks > 0) line += Format("  marks %zu", marks);
    return line;
}

std::string PlayLine(const std::string& name, std::uint32_t heard, std::uint32_t length,
                     std::uint32_t periodsPerSecond, std::uint8_t level) {
    return Format("%s  %8s of %s  [%s]", name.c_str(),
                  PositionText(heard, periodsPerSecond).c_str(),
                  PositionText(length, periodsPerSecond).c_str(), LevelBar(level).c_str());
}

}  // namespace orma::cli
