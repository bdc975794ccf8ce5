#pragma once

namespace orma {

/// Asked by an adapter again and again while it waits for a network: the place where a progress
/// screen stays alive and where a user's Cancel takes effect. On the thread that called the
/// adapter.
class Patience {
  public:
    virtual ~Patience() = default;

    /// Called at least every 50 ms of waiting. False gives the operation up: it ends at once as a
    /// failure of its own kind, never as a success.
    [[nodiscard]] virtual bool GoOn() = 0;
};

}  // namespace orma
