#pragma once

#include <cstdint>

#include "base/text.h"

namespace orma {

/// What a publish job shows and asks while it runs. UI thread; the calls come from inside the job.
class PublishProgress {
  public:
    virtual ~PublishProgress() = default;

    virtual void SetText(const Text& text) = 0;
    virtual void SetRange(std::uint32_t steps) = 0;
    virtual void Step(std::uint32_t steps) = 0;

    /// How far into the file being sent the job is, in bytes, and how many the file will have. What
    /// a server held before a resumed attempt counts as done from its start.
    virtual void SetBytes(std::uint64_t /*done*/, std::uint64_t /*total*/) {}

    /// True once the user asked to cancel.
    [[nodiscard]] virtual bool IsCancelled() = 0;
};

}  // namespace orma
