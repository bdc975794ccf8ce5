#pragma once

#include <cstdint>

#include "shell/commands.h"

namespace orma {

class Shell;

/// Carries a command out. `notification` is the list view's code, 0 for all others.
using CommandAction = void (*)(Shell& shell, std::uint32_t notification);

/// Null for a number that is no command.
[[nodiscard]] CommandAction FindAction(Command command);

}  // namespace orma
