#pragma once

#include <optional>

#include "platform/clock.h"
#include "platform/patience.h"
#include "publish/progress.h"

namespace orma {

/// The patience of a publish job: it ends when the user cancels, at once while nothing is under way
/// yet. A transfer that began gets a last grace, in which the job ends the file properly; a dead
/// server holds the user no longer than that. UI thread.
class PublishPatience : public Patience {
  public:
    static constexpr std::uint32_t kGraceMs = 10000;

    /// Both outlive the object.
    PublishPatience(PublishProgress& progress, Clock& clock) : progress_(progress), clock_(clock) {}

    [[nodiscard]] bool GoOn() override;

    /// From now on a Cancel counts at once; `transfer`: after the grace.
    void Start(bool transfer = false) {
        transfer_ = transfer;
        graceEnds_.reset();
    }

    /// Waits; false as soon as patience is over.
    [[nodiscard]] bool Wait(std::uint32_t milliseconds);

  private:
    PublishProgress& progress_;
    Clock& clock_;
    bool transfer_ = false;
    std::optional<std::uint32_t> graceEnds_;  // ticks
};

}  // namespace orma
