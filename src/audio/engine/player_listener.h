#pragma once

#include <cstdint>
#include <optional>

#include "audio/files/level_sheet.h"
#include "platform/wave.h"

namespace orma {

/// What the player tells its screens, and the one thing that it asks. UI thread; the bodies do
/// nothing by default. Positions in buffer periods. Every operation of the player may be called
/// from within.
class PlayerListener {
  public:
    virtual ~PlayerListener() = default;

    /// One a buffer, for time display, scroll bar and graph: what is being heard, which is three
    /// periods behind what is written, and the level byte that the graph shows (79 when unknown).
    virtual void OnPosition(std::uint32_t /*heard*/, std::uint8_t /*level*/) {}

    /// The place was moved by WavRestartPlaying: views are redrawn, the editor's selection state
    /// is cleared.
    virtual void OnPlaceMoved(std::uint32_t /*position*/) {}

    /// The place was moved onto an edge of a cut, which is now the current one.
    virtual void OnCutChosen(std::int32_t /*index*/) {}

    /// Playing began or was stopped: the buttons follow.
    virtual void OnPlaying(bool /*playing*/) {}

    /// The range is played to its end. Whoever has more to be heard without a gap makes that
    /// recording the current one and answers its range; otherwise playing ends.
    virtual std::optional<PeriodRange> NextRange() { return std::nullopt; }

    /// Playing ended by itself: everything was heard and the device is closed.
    virtual void OnPlayedOut() {}

    /// Playing ended because the device is gone; it is closed.
    virtual void OnOutputLost(WaveLoss /*reason*/) {}
};

}  // namespace orma
