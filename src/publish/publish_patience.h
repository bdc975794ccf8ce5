#pragma once

#include <optional>

#include "platform/clock.h"
#include "platform/patience.h"
#include "publish/progress.h"

namespace orma {

/// The patience of a publish job: it ends when the user cancels. What a cancelled job then does to
/// end its file properly gets a last grace, so that a dead server cannot hold the user. UI thread.
class PublishPatience : public Patience {
  public:
    static constexpr std::uint32_t kGraceMs = 10000;

    /// Both outlive the object.
    PublishPatience(PublishProgress& progress, Clock& clock) : progress_(progress), clock_(clock) {}

    [[nodiscard]] bool GoOn() override;

    /// A new job: patience until the user cancels.
    void Start() { graceEnds_.reset(); }

    /// From now on patience lasts kGraceMs, whatever the user says.
    void GrantGrace() { graceEnds_ = clock_.Ticks() + kGraceMs; }

    /// Waits; false as soon as patience is over.
    [[nodiscard]] bool Wait(std::uint32_t milliseconds);

  private:
    PublishProgress& progress_;
    Clock& clock_;
    std::optional<std::uint32_t> graceEnds_;  // ticks
};

}  // namespace orma
