#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace orma {

/// The number that the whole text is, as std::from_chars reads it: no blanks, no plus sign; nothing
/// when anything else stands in it or it does not fit the type.
template <class Number>
[[nodiscard]] std::optional<Number> ParseNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stopped != end) return std::nullopt;
    return number;
}

}  // namespace orma
