#pragma once

namespace orma {

/// A device whose audio callback wakes the UI thread.
class Pumped {
  public:
    virtual ~Pumped() = default;

    /// Moves what the callback has left or taken, and looks whether the stream has ended. UI
    /// thread; may destroy the device.
    virtual void Pump() = 0;
};

}  // namespace orma
