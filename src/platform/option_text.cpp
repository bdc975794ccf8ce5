#include "platform/option_text.h"

#include <algorithm>

namespace orma {
namespace {

/// The key that `text` begins with; empty: none.
std::string_view KeyOf(std::string_view text, std::span<const std::string_view> keys) {
    const auto found =
        std::ranges::find_if(keys, [&](std::string_view key) { return text.starts_with(key); });
    return found == keys.end() ? std::string_view() : *found;
}

}  // namespace

OptionPart TakeOption(std::string_view& text, std::span<const std::string_view> keys) {
    std::size_t end = text.find(',');
    while (end != text.npos && KeyOf(text.substr(end + 1), keys).empty())
        end = text.find(',', end + 1);
    OptionPart part{.text = text.substr(0, end), .key = {}, .value = {}};
    part.key = KeyOf(part.text, keys);
    part.value = part.text.substr(part.key.size());
    text.remove_prefix(std::min(part.text.size() + 1, text.size()));
    return part;
}

}  // namespace orma
