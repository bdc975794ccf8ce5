#include "stream/smtp_reply.h"

#include <algorithm>
#include <cctype>

namespace orma {
namespace {

bool SameLetters(std::string_view a, std::string_view b) {
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

std::string_view NextWord(std::string_view& line) {
    const std::size_t start = std::min(line.find_first_not_of(" \t\r="), line.size());
    const std::size_t end = std::min(line.find_first_of(" \t\r=", start), line.size());
    const std::string_view word = line.substr(start, end - start);
    line.remove_prefix(end);
    return word;
}

}  // namespace

std::string Printable(std::string text) {
    std::ranges::replace_if(
        text, [](char unit) { return unit < ' ' || unit > '~'; }, '.');
    return text;
}

std::size_t EndOfReply(std::string_view text) {
    std::size_t line = 0;
    while (true) {
        const std::size_t end = text.find('\n', line);
        if (end == std::string_view::npos) return end;
        if (end - line < 4 || text[line + 3] != '-') return end + 1;
        line = end + 1;
    }
}

std::string_view LastLine(std::string_view text) {
    const std::size_t end = EndOfReply(text);
    if (end == std::string_view::npos) return {};
    text = text.substr(0, end - 1);
    const std::size_t before = text.rfind('\n');
    return before == std::string_view::npos ? text : text.substr(before + 1);
}

std::string ChallengeOf(std::string_view line) {
    line.remove_prefix(std::min<std::size_t>(line.size(), 4));
    const std::size_t begin = std::min(line.find_first_not_of(" \t\r"), line.size());
    return std::string(line.substr(begin, line.find_first_of(" \t\r", begin) - begin));
}

bool OffersExtension(std::string_view reply, std::string_view keyword, std::string_view value) {
    while (reply.size() > 4) {
        const std::size_t end = std::min(reply.find('\n'), reply.size() - 1);
        std::string_view line = reply.substr(0, end);
        reply.remove_prefix(end + 1);
        if (line.size() <= 4) continue;
        line.remove_prefix(4);  // the code and its hyphen
        if (!SameLetters(NextWord(line), keyword)) continue;
        if (value.empty()) return true;
        for (std::string_view word = NextWord(line); !word.empty(); word = NextWord(line)) {
            if (SameLetters(word, value)) return true;
        }
    }
    return false;
}

}  // namespace orma
