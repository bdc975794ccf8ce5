#include "cli/position.h"

#include <cmath>

#include "base/number.h"
#include "base/text.h"
#include "cli/globals.h"

namespace orma::cli {
namespace {

constexpr double kLargest = 4294967295.0;

}  // namespace

std::optional<std::uint32_t> ParsePosition(const std::string& text,
                                           std::uint32_t periodsPerSecond) {
    if (text.starts_with('#')) return ParseNumber<std::uint32_t>(std::string_view(text).substr(1));
    std::string_view rest = text;
    double minutes = 0;
    if (const std::size_t colon = rest.find(':'); colon != std::string_view::npos) {
        const auto whole = ParseNumber<std::uint32_t>(rest.substr(0, colon));
        if (!whole) return std::nullopt;
        minutes = *whole;
        rest.remove_prefix(colon + 1);
    }
    const auto seconds = ParseNumber<double>(rest);
    if (!seconds || !std::isfinite(*seconds) || *seconds < 0) return std::nullopt;
    if (minutes > 0 && *seconds >= 60) return std::nullopt;
    const double periods = std::round((minutes * 60 + *seconds) * periodsPerSecond);
    if (periods > kLargest) return std::nullopt;
    return static_cast<std::uint32_t>(periods);
}

std::uint32_t RequirePosition(const std::string& text, std::uint32_t periodsPerSecond) {
    const auto position = ParsePosition(text, periodsPerSecond);
    if (!position) throw UsageError("not a time (m:ss.hh, seconds or #N): " + text);
    return *position;
}

std::string PositionText(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    const std::uint32_t seconds = periods / periodsPerSecond;
    const std::uint32_t hundredths = periods % periodsPerSecond * 100 / periodsPerSecond;
    return Format("%u:%02u.%02u", seconds / 60, seconds % 60, hundredths);
}

}  // namespace orma::cli
