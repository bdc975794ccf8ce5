#pragma once

#include <string_view>

#include "platform/storage.h"

namespace orma {

// Small text files of integers that users edit by hand: "[section]" headers and "key=number" lines.
// A file is a sequence of tokens between white space, so a line that holds a blank is several
// tokens. Names are 8-bit Windows-1252 without white space, compared byte for byte. A header must
// match whole, a key matches every token that begins with it (Big also finds Bigger=3): files in
// the field rely on that.

/// The value of `key` in `section`, or `defaultValue` when the file, the section, the key or its
/// number is missing. A file that may only be read is read. Reports nothing.
[[nodiscard]] int ReadKey(Storage& storage, std::string_view section, std::string_view key,
                          int defaultValue, const Text& path);

/// Sets `key` in `section`, adding either when it is missing, and creates a missing file. The file
/// is rewritten one token a line, an empty line before each header, through "temp.ini" in the same
/// folder, which replaces it in one step. Reports nothing: a file that cannot be read or written
/// stays as it is.
void WriteKey(Storage& storage, std::string_view section, std::string_view key, int value,
              const Text& path);

}  // namespace orma
