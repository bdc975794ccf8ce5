#pragma once

#include "platform/headset_probe.h"

namespace orma {

/// A system that cannot tell whether a headset is plugged in: the usual desktop.
class UnknownHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool /*alternativeKey*/) override { return -1; }
};

}  // namespace orma
