#pragma once

#include <cstdint>

#include "base/text.h"

namespace orma {

/// What a publish job shows and asks while it runs. UI thread; the calls come from inside the job.
class PublishProgress {
  public:
    virtual ~PublishProgress() = default;

    /// Around all that a job sends, its last boxes included: one Begin, later one End. Everything
    /// below comes between the two; what a job checks and asks before it sends is not shown.
    virtual void Begin() {}
    virtual void End() {}

    virtual void SetText(const Text& text) = 0;
    virtual void SetRange(std::uint32_t steps) = 0;
    virtual void Step(std::uint32_t steps) = 0;

    /// How far into the file being sent the job is, in bytes, and how many the file will have. What
    /// a server held before a resumed attempt counts as done from its start.
    virtual void SetBytes(std::uint64_t /*done*/, std::uint64_t /*total*/) {}

    /// True once the user asked to cancel.
    [[nodiscard]] virtual bool IsCancelled() = 0;
};

/// Shows a job's progress as long as it lives, whichever way the job ends.
class ShownProgress {
  public:
    explicit ShownProgress(PublishProgress& progress) : progress_(progress) { progress_.Begin(); }
    ~ShownProgress() { progress_.End(); }
    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;

  private:
    PublishProgress& progress_;
};

}  // namespace orma
