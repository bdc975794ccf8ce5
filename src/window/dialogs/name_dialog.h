#pragma once

#include <optional>

#include "base/text.h"

namespace orma {

/// "Type in a new name", over the active window: the name that the user typed in place of
/// `proposed`; nothing for Cancel. UI thread; blocks until it is answered.
[[nodiscard]] std::optional<Text> AskName(const Text& proposed);

}  // namespace orma
