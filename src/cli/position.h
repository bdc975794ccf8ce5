#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orma::cli {

/// A time or position on the command line in buffer periods: "m:ss.hh", seconds with a fraction, or
/// "#N" for N periods. Nothing when the text is neither. Times are rounded to the nearest period.
[[nodiscard]] std::optional<std::uint32_t> ParsePosition(const std::string& text,
                                                         std::uint32_t periodsPerSecond);

/// The same; a UsageError when the text is neither.
[[nodiscard]] std::uint32_t RequirePosition(const std::string& text,
                                            std::uint32_t periodsPerSecond);

/// A position as "m:ss.hh".
[[nodiscard]] std::string PositionText(std::uint32_t periods, std::uint32_t periodsPerSecond);

}  // namespace orma::cli
