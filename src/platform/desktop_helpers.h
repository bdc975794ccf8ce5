#pragma once

#include <cstdint>

#include "base/text.h"
#include "base/trace.h"

namespace orma {

/// Programs of the desktop that recording has to do with. A desktop without them is the normal
/// case: the bodies here only trace. UI thread; none waits for what it asks.
class DesktopHelpers {
  public:
    virtual ~DesktopHelpers() = default;

    /// Starts the tool that sets the microphone's gain, which ends by itself. `mode` is the order
    /// of its two commands (0 or 1). False when there is no such tool.
    [[nodiscard]] virtual bool StartMicrophoneGainTool(std::uint32_t mode) {
        Trace("no microphone-gain tool, mode %u", static_cast<unsigned>(mode));
        return false;
    }

    /// Starts a command line of the user's, whose first parameter ($1) is `argument`. False when it
    /// cannot be started.
    [[nodiscard]] virtual bool StartCommand(const Text& command, const Text& /*argument*/) {
        Trace("nobody starts \"%s\"", ToUtf8(command).c_str());
        return false;
    }

    /// Asks the desktop's synchronisation program to close.
    virtual void CloseSynchronisation() { Trace("no synchronisation program"); }
};

}  // namespace orma
