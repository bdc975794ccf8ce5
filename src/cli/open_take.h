#pragma once

#include <string>

#include "app/application.h"
#include "cli/output.h"

namespace orma::cli {

/// The absolute path of a take named on the command line; a UsageError when it is neither .wav nor
/// .mp2.
[[nodiscard]] Text TakePath(const std::string& argument);

/// The project file whose clip list holds the take, else the one in its folder that it is numbered
/// for; empty for a lone file. The take need not exist.
[[nodiscard]] Text ProjectOfTake(Application& app, const Text& takePath);

/// Makes a take current: in its project, whose clip of it is selected, or as a lone file in the
/// format that it and its level file have. The settings are loaded. Throws std::runtime_error when
/// it cannot be read.
void OpenTake(Application& app, const Text& takePath);

/// A time inside the current recording, its end included, in buffer periods. A UsageError when it
/// is no time, a std::runtime_error when the recording is shorter.
[[nodiscard]] std::uint32_t TimeInTake(const Application& app, const std::string& text);

/// A range [begin, end) of the current recording as its selection; throws as TimeInTake does, and
/// where the range is empty.
void SelectRange(Application& app, const std::string& begin, const std::string& end);

/// Path, project and length of the current recording, for what a command prints.
[[nodiscard]] Json TakeFields(const Application& app);

}  // namespace orma::cli
