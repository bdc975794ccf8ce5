#pragma once

#include <string>

#include "base/text.h"

namespace orma::cli {

/// The absolute path of a project file named on the command line; a UsageError when it does not end
/// in ".opr".
[[nodiscard]] Text ProjectPath(const std::string& argument);

}  // namespace orma::cli
