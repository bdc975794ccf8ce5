#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "audio/files/level_sheet.h"

namespace orma::cli {

/// Draws the level strip of a take as text: `columns` wide, `rows` high, the loudest level of each
/// column's periods as a bar, marks as '|' and removed stretches as 'x' on a line below. Ends with
/// a line of times.
[[nodiscard]] std::string LevelGraph(const LevelSheet& sheet, unsigned columns, unsigned rows);

}  // namespace orma::cli
