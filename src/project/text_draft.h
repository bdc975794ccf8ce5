#pragma once

#include "stream/jstream_file.h"

namespace orma {

// The text of a project that has no file to hold it, since it has no clips yet: as UTF-8 in a file
// beside the place of the project's file, "<project>.opr.text". Once the project has a file the
// draft goes.

/// Empty when there is none, or it cannot be read (reported).
[[nodiscard]] Text ReadTextDraft(FileServices services, const Text& projectFilePath);

/// Replaces it; an empty text removes it. False on failure (reported).
[[nodiscard]] bool WriteTextDraft(FileServices services, const Text& projectFilePath,
                                  const Text& text);

}  // namespace orma
