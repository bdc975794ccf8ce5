#pragma once

#include <memory>
#include <optional>
#include <string>

#include "machine/machine_options.h"
#include "platform/event_loop.h"
#include "platform/external_recorder.h"
#include "platform/headset_probe.h"
#include "platform/spdif_card.h"
#include "platform/wave.h"

namespace orma {

/// The sound system and what is attached to it, as the options --audio and --hardware choose it.
/// Destroyed from the bottom up: a simulated recorder outlives the sound system that plays it.
struct Hardware {
    std::unique_ptr<ExternalRecorder> recorder = nullptr;  // null: none
    std::unique_ptr<SpdifCard> card = nullptr;             // null: none
    std::unique_ptr<HeadsetProbe> headset = nullptr;
    std::unique_ptr<WaveSystem> waves = nullptr;
};

/// None when an option is not understood: `error` says why. Touches no device.
[[nodiscard]] std::optional<Hardware> MakeHardware(const MachineOptions& options, EventLoop& loop,
                                                   std::string& error);

}  // namespace orma
