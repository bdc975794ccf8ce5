#pragma once

#include <optional>

#include "base/bytes.h"
#include "stream/jstream_file.h"

namespace orma {

/// The whole content of a file, as large as the file says; nothing on failure (reported).
[[nodiscard]] std::optional<Bytes> ReadWholeFile(FileServices services, const Text& path);

/// Replaces a file whole or not at all; false on failure (reported).
[[nodiscard]] bool ReplaceWholeFile(FileServices services, const Text& path, ByteSpan bytes);

}  // namespace orma
