#pragma once

#include <QFont>

#include "ui/paint/ink.h"

namespace orma {

/// The toolkit's font for one of ours, in the family and with the smoothing of the whole window.
[[nodiscard]] QFont QtFontOf(const Font& font);

}  // namespace orma
