#pragma once

#include "platform/headset_probe.h"
#include "publish/progress.h"

namespace orma::test {

/// A machine that cannot tell whether a headset is plugged in.
class NoHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool) override { return -1; }
};

/// A publish job that nobody watches or cancels.
class NoProgress : public PublishProgress {
  public:
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }
};

}  // namespace orma::test
