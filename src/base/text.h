#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace orma {

/// A text value: UTF-16 code units, as they stand in every binary file of the system.
using Text = std::u16string;
using TextView = std::u16string_view;

/// UTF-8 to UTF-16. Bytes that are not valid UTF-8 become lone low surrogates U+DC80..U+DCFF, so
/// that every POSIX file name survives the way into a Text and back.
[[nodiscard]] Text FromUtf8(std::string_view utf8);

/// UTF-16 to UTF-8, the inverse of FromUtf8. Other lone surrogates are written in their three-byte
/// form; FromUtf8 reads that back as three escaped bytes, so it is shown but not recovered.
[[nodiscard]] std::string ToUtf8(TextView text);

/// 8-bit text in Windows-1252, the code page of Broadcast-Wave fields, section files and mail.
/// The five bytes that the code page leaves undefined become the C1 control of the same number.
[[nodiscard]] Text FromWindows1252(std::string_view bytes);

/// UTF-16 to Windows-1252; '?' stands for each character that the code page lacks.
[[nodiscard]] std::string ToWindows1252(TextView text);

/// printf into a string. The caller's format and arguments are checked by the compiler.
[[nodiscard]] std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Format for operations that take printf's arguments themselves.
[[nodiscard]] std::string FormatList(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

/// Format, widened: the arguments are ASCII.
[[nodiscard]] Text FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace orma
