#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/wave.h"

namespace orma {

enum class MixerSide { kCapture, kPlayback };

/// A simple mixer element, as far as volume goes.
struct MixerElement {
    std::string name;
    bool captureVolume = false;
    bool playbackVolume = false;
};

/// The element that sets the volume of a side: the best known name among those that have one, else
/// the first of them. Returns its place in the list.
[[nodiscard]] std::optional<std::size_t> PickMixerElement(const std::vector<MixerElement>& elements,
                                                          MixerSide side);

/// Sets the volume of a side of a card, all channels. An element without a decibel scale is set to
/// `share` (0..1) of its range instead. kNoDevice without card or element. UI thread; blocks for
/// some milliseconds.
[[nodiscard]] WaveResult SetMixerVolume(int card, MixerSide side, double decibels, double share);

}  // namespace orma
