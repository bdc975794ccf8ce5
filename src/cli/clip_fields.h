#pragma once

#include "app/application.h"
#include "cli/output.h"

namespace orma::cli {

/// The clips of the open project, in order, for what a command prints.
[[nodiscard]] Json ClipFields(const Application& app);

}  // namespace orma::cli
