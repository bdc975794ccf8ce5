#pragma once

#include "platform/desktop_helpers.h"

namespace orma {

/// Starts the user's commands with the system's shell, in the background: they read nothing, their
/// output goes to standard error, Ctrl-C is not theirs, and they may outlive the program. What
/// else a desktop may have is not there.
class ShellCommands : public DesktopHelpers {
  public:
    [[nodiscard]] bool StartCommand(const Text& command, const Text& argument) override;
};

}  // namespace orma
