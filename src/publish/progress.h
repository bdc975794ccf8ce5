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

    /// True once the user asked to cancel.
    [[nodiscard]] virtual bool IsCancelled() = 0;
};

}  // namespace orma
