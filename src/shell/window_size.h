#pragma once

#include "platform/storage.h"
#include "ui/paint/geometry.h"

namespace orma {

/// The window's client area below its menu bar, pixels, as the section file at `path` ("size.txt"
/// beside the program) asks for it: 240 x 270, 320 x 190 or 240 x 190, doubled unless it says
/// otherwise; see WindowShape. Writes the file back as it was understood. Reports nothing: one that
/// cannot be read gives the doubled 240 x 270, one that cannot be written stays. UI thread.
[[nodiscard]] Size ReadWindowSize(Storage& storage, const Text& path);

}  // namespace orma
