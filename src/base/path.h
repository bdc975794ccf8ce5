#pragma once

#include "base/text.h"

namespace orma {

/// A path taken apart at its last separator and its last dot.
struct PathParts {
    Text folder;     // up to and with the last separator; empty when there is none
    Text name;       // between folder and extension
    Text extension;  // with its dot; empty when there is none
};

/// Splits a path; `/` and `\` both separate, because projects travel between systems.
[[nodiscard]] PathParts SplitPath(TextView path);

/// `path` with its extension replaced (`extension` holds its dot).
[[nodiscard]] Text WithExtension(TextView path, TextView extension);

/// The folder with this system's separator at its end; an empty folder stays empty.
[[nodiscard]] Text AsFolder(TextView folder);

}  // namespace orma
