#pragma once

#include <functional>

namespace orma {

/// This program and its set-up program as the desktop sees them: one window of each a user. UI
/// thread.
class RunningInstance {
  public:
    /// What another instance asks of this one.
    struct Requests {
        std::function<void()> raise;  // come to the front
        std::function<void()> close;  // end; the other one takes over
    };

    virtual ~RunningInstance() = default;

    /// True when a window of this program is open.
    [[nodiscard]] virtual bool IsOpen() = 0;

    /// Brings that window to the front.
    virtual void Raise() = 0;

    /// Ends that instance as its user would, and waits until it is gone. False when it is still
    /// there after `patienceMs` milliseconds.
    [[nodiscard]] virtual bool Close(int patienceMs) = 0;

    /// Asks a running set-up program to close; does not wait.
    virtual void CloseSetup() = 0;

    /// From now on this instance is the open one; others' requests arrive on the event loop. False
    /// when another one is.
    [[nodiscard]] virtual bool Open(Requests requests) = 0;

    /// Its window is gone and all that it keeps in files is written: the next one may start.
    virtual void Leave() = 0;
};

}  // namespace orma
