#pragma once

#include <cstdint>

#include "base/trace.h"

namespace orma {

/// Programs of the desktop that recording has to do with. A desktop without them is the normal
/// case: the bodies here only trace. UI thread; neither waits for what it asks.
class DesktopHelpers {
  public:
    virtual ~DesktopHelpers() = default;

    /// Starts the tool that sets the microphone's gain, which ends by itself. `mode` is the order
    /// of its two commands (0 or 1). False when there is no such tool.
    [[nodiscard]] virtual bool StartMicrophoneGainTool(std::uint32_t mode) {
        Trace("no microphone-gain tool, mode %u", static_cast<unsigned>(mode));
        return false;
    }

    /// Asks the desktop's synchronisation program to close.
    virtual void CloseSynchronisation() { Trace("no synchronisation program"); }
};

}  // namespace orma
