#include "setup/originator_code.h"

#include <algorithm>
#include <array>

#include "base/bytes.h"
#include "base/number.h"

namespace orma {
namespace {

constexpr std::size_t kLetters = 4;

bool IsPrintable(char letter) {
    return letter >= ' ' && letter <= '~';
}

}  // namespace

std::string CodeText(std::uint32_t code) {
    if (code == 0) return {};
    std::array<std::uint8_t, kLetters> bytes{};
    StoreLe(bytes.data(), code);
    std::string text(bytes.begin(), bytes.end());
    const bool isText = std::ranges::all_of(text, IsPrintable) && text[0] != '#' && text[0] != ' ';
    if (!isText) return "#" + std::to_string(code);
    while (text.back() == ' ')
        text.pop_back();
    return text;
}

std::optional<std::uint32_t> CodeOf(std::string_view text) {
    if (text.empty()) return 0;
    if (text[0] == '#') return ParseNumber<std::uint32_t>(text.substr(1));
    if (text.size() > kLetters || text[0] == ' ' || !std::ranges::all_of(text, IsPrintable))
        return std::nullopt;
    std::array<std::uint8_t, kLetters> bytes{};
    bytes.fill(' ');
    std::ranges::copy(text, bytes.begin());
    return LoadLe<std::uint32_t>(bytes.data());
}

}  // namespace orma
