#pragma once

#include <span>
#include <string_view>

namespace orma {

/// A part "key=value" of the text by which a simulated device is described, as "in=FILE,pace=fast".
struct OptionPart {
    std::string_view text;   // all of it
    std::string_view key;    // with its equals sign; empty: none of those that are known
    std::string_view value;  // behind the key
};

/// Takes the first part off `text`, with the comma behind it. A comma belongs to the value, which
/// may be a file name, unless one of `keys` follows it.
[[nodiscard]] OptionPart TakeOption(std::string_view& text, std::span<const std::string_view> keys);

}  // namespace orma
