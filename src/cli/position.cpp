#include "cli/position.h"

#include <charconv>
#include <cmath>

#include "base/text.h"

namespace orma::cli {
namespace {

constexpr double kLargest = 4294967295.0;

template <class T>
std::optional<T> Number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::uint32_t> ParsePosition(const std::string& text,
                                           std::uint32_t periodsPerSecond) {
    if (text.starts_with('#')) return Number<std::uint32_t>(std::string_view(text).substr(1));
    std::string_view rest = text;
    double minutes = 0;
    if (const std::size_t colon = rest.find(':'); colon != std::string_view::npos) {
        const auto whole = Number<std::uint32_t>(rest.substr(0, colon));
        if (!whole) return std::nullopt;
        minutes = *whole;
        rest.remove_prefix(colon + 1);
    }
    const auto seconds = Number<double>(rest);
    if (!seconds || !std::isfinite(*seconds) || *seconds < 0) return std::nullopt;
    if (minutes > 0 && *seconds >= 60) return std::nullopt;
    const double periods = std::round((minutes * 60 + *seconds) * periodsPerSecond);
    if (periods > kLargest) return std::nullopt;
    return static_cast<std::uint32_t>(periods);
}

std::string PositionText(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    const std::uint32_t seconds = periods / periodsPerSecond;
    const std::uint32_t hundredths = periods % periodsPerSecond * 100 / periodsPerSecond;
    return Format("%u:%02u.%02u", seconds / 60, seconds % 60, hundredths);
}

}  // namespace orma::cli
