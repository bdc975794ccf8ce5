#pragma once

#include <string>

namespace orma {

/// Returns once a file's data is on the medium: 0, or an errno. A file system that knows no syncing
/// is no failure: it keeps its own promises. Any thread.
[[nodiscard]] int SyncFile(int descriptor);

/// Brings the entries of a folder (empty: the current one) to the medium: a new or renamed file is
/// only safe with them. Any thread.
void SyncFolder(const std::string& folder);

}  // namespace orma
