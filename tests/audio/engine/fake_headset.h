#pragma once

#include "platform/headset_probe.h"

namespace orma::test {

/// A headset state for each of the two places that hold it.
class FakeHeadset : public HeadsetProbe {
  public:
    int State(bool alternativeKey) override { return alternativeKey ? alternative : state; }

    int state = -1;
    int alternative = -1;
};

}  // namespace orma::test
