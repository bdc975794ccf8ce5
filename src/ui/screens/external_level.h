#pragma once

#include <cstdint>
#include <optional>

#include "audio/engine/external_recorder_control.h"

namespace orma {

/// The input level of an external recorder, which measures by itself: asked for with every tick of
/// the screen's timer, as the buffers bring none. UI thread.
class ExternalLevel {
  public:
    /// Asks the recorder. The level byte for the meter: it rises at once and falls by an eighth of
    /// the way with each call; nothing while the recorder does not answer. The number has a channel
    /// in each half: in mono only the upper one counts.
    [[nodiscard]] std::optional<std::uint8_t> Read(ExternalRecorderControl& recorder, bool stereo);

    /// Falls silent: the next recording does not begin with the level of the last one.
    void Rest() { shown_ = 0; }

  private:
    std::uint32_t shown_ = 0;  // peak, 0..65535
};

}  // namespace orma
