#pragma once

#include <signal.h>

namespace orma {

/// Holds Ctrl-C back while it lives, for a job that runs without the event loop and asks when it
/// can stop. One thread.
class HeldInterrupt {
  public:
    HeldInterrupt();

    /// Lets interrupts through again; one that came meanwhile was answered by the job and is
    /// forgotten.
    ~HeldInterrupt();
    HeldInterrupt(const HeldInterrupt&) = delete;
    HeldInterrupt& operator=(const HeldInterrupt&) = delete;

    /// True once Ctrl-C was pressed.
    [[nodiscard]] bool IsPending() const;

  private:
    sigset_t previous_{};
};

}  // namespace orma
