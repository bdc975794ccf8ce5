#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orma {

/// An originator code as people know it: the four bytes that stand in the material identifier are
/// letters, filled up with blanks (SMPTE 330M). A code of other bytes is written as a number behind
/// "#", none as an empty text.
[[nodiscard]] std::string CodeText(std::uint32_t code);

/// The code of such a text; none when it is longer than four letters, holds others than printable
/// ASCII, or no number of 32 bits behind the "#".
[[nodiscard]] std::optional<std::uint32_t> CodeOf(std::string_view text);

}  // namespace orma
