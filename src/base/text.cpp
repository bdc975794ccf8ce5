#include "base/text.h"

#include <array>
#include <cstdio>

namespace orma {
namespace {

constexpr char32_t kEscapeBase = 0xDC00;  // an undecodable byte b is kept as U+DC00 + b

// Windows-1252 differs from Latin-1 only in 0x80..0x9F.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Decoded {
    char32_t codePoint;
    std::size_t length;  // 0 when the bytes are not valid UTF-8
};

Decoded DecodeUtf8(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char first = at(0);
    if (first < 0x80) return {first, 1};
    std::size_t length = 0;
    char32_t value = 0;
    char32_t smallest = 0;
    if (first >= 0xC2 && first < 0xE0) {
        length = 2, value = first & 0x1FU, smallest = 0x80;
    } else if (first >= 0xE0 && first < 0xF0) {
        length = 3, value = first & 0x0FU, smallest = 0x800;
    } else if (first >= 0xF0 && first < 0xF5) {
        length = 4, value = first & 0x07U, smallest = 0x10000;
    } else {
        return {0, 0};
    }
    if (bytes.size() < length) return {0, 0};
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0U) != 0x80U) return {0, 0};
        value = (value << 6) | (at(i) & 0x3FU);
    }
    if (value < smallest || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) return {0, 0};
    return {value, length};
}

void AppendUtf8(std::string& out, char32_t codePoint) {
    const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | (codePoint >> 6));
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | (codePoint >> 12));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | (codePoint >> 18));
        put(0x80 | ((codePoint >> 12) & 0x3F));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

}  // namespace

Text FromUtf8(std::string_view utf8) {
    Text out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded decoded = DecodeUtf8(utf8);
        if (decoded.length == 0) {
            out.push_back(
                static_cast<char16_t>(kEscapeBase + static_cast<unsigned char>(utf8.front())));
            utf8.remove_prefix(1);
            continue;
        }
        if (decoded.codePoint >= 0x10000) {
            const char32_t rest = decoded.codePoint - 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (rest >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (rest & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(decoded.codePoint));
        }
        utf8.remove_prefix(decoded.length);
    }
    return out;
}

std::string ToUtf8(TextView text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00U));
            ++i;
        } else if (unit >= 0xDC80 && unit <= 0xDCFF) {
            out.push_back(static_cast<char>(unit - kEscapeBase));
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

Text FromWindows1252(std::string_view bytes) {
    Text out;
    out.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        out.push_back(value >= 0x80 && value < 0xA0 ? kUpperControls[value - 0x80U] : value);
    }
    return out;
}

std::string ToWindows1252(TextView text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit < 0x80 || (unit >= 0xA0 && unit < 0x100)) {
            out.push_back(static_cast<char>(unit));
            continue;
        }
        char byte = '?';
        for (std::size_t k = 0; k < kUpperControls.size(); ++k) {
            if (kUpperControls[k] == unit) byte = static_cast<char>(0x80 + k);
        }
        out.push_back(byte);
        const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < text.size() &&
                          text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
        if (pair) ++i;  // one character, one '?'
    }
    return out;
}

std::string FormatList(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string out(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(out.data(), out.size() + 1, format, again);
    va_end(again);
    return out;
}

std::string Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string out = FormatList(format, arguments);
    va_end(arguments);
    return out;
}

Text FormatText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string out = FormatList(format, arguments);
    va_end(arguments);
    return FromUtf8(out);
}

}  // namespace orma
