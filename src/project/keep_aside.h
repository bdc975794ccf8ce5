#pragma once

#include <span>

#include "stream/jstream_file.h"

namespace orma {

/// True when a file "<basePath><extension>" exists.
[[nodiscard]] bool AnyExists(Storage& storage, const Text& basePath,
                             std::span<const TextView> extensions);

/// "<basePath> (kept N)" with the lowest N from 1 that is free for all of the extensions.
[[nodiscard]] Text KeptPath(Storage& storage, const Text& basePath,
                            std::span<const TextView> extensions);

/// Frees the names "<basePath><extension>" without destroying anything: the files that bear them
/// are renamed to "<KeptPath><extension>". All of them move or none; false on failure (reported).
[[nodiscard]] bool KeepAside(FileServices services, const Text& basePath,
                             std::span<const TextView> extensions);

}  // namespace orma
