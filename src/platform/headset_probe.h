#pragma once

namespace orma {

/// Tells whether a headset is plugged in.
class HeadsetProbe {
  public:
    virtual ~HeadsetProbe() = default;

    /// 0 without a headset, another value with one, -1 when the system cannot tell.
    /// `alternativeKey` asks the second place where some devices keep the state. UI thread.
    [[nodiscard]] virtual int State(bool alternativeKey) = 0;
};

}  // namespace orma
