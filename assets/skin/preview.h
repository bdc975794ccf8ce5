#pragma once

#include <QDir>

#include "skin_set.h"

namespace orma::art {

/// Composes the screens as a reporter sees them, from the bitmap files in `bitmaps`, and writes a
/// contact sheet for each scale into `folder`: "<name of bitmaps>@1x.png" and "…@2x.png".
[[nodiscard]] bool WritePreviews(const SkinSet& set, const QDir& bitmaps, const QDir& folder);

}  // namespace orma::art
