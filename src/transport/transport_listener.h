#pragma once

#include <cstdint>

#include "audio/engine/player_listener.h"
#include "audio/engine/recorder_listener.h"
#include "audio/engine/transport_state.h"
#include "base/text.h"
#include "project/edge_nudge.h"

namespace orma {

/// The transport buttons that are lit.
struct LitButtons {
    bool stop = false;
    bool play = false;
    bool record = false;
    bool rewind = false;
    bool fastForward = false;

    friend bool operator==(const LitButtons&, const LitButtons&) = default;
};

/// What lights in a state: one button, but Record and Play while recording.
[[nodiscard]] LitButtons ButtonsOf(TransportState state);

/// What screens hear of the transport, and through it of recorder and player: state, lamp, buttons,
/// mark text, positions, levels. OnCutChosen is told -1 when no cut is current any more. The
/// transport has done its own part before it passes anything on. UI thread; the bodies do nothing
/// by default.
class TransportListener : public RecorderListener, public PlayerListener {
  public:
    /// Another state: its lamp is the state's number. Menus follow it (no editing in states 1 and
    /// 2), the level meter falls back in state 0.
    virtual void OnTransportState(TransportState /*state*/, const LitButtons& /*lit*/) {}

    /// A text for the status line, to be shown for so many buffer periods.
    virtual void OnMarkText(const Text& /*text*/, std::uint32_t /*periods*/) {}

    /// An edge and the cursor moved by a period: graph and scroll bar are redrawn. The move is
    /// stored; whoever keeps the undo record takes it from here.
    virtual void OnEdgeMoved(const EdgeMove& /*move*/) {}
};

}  // namespace orma
