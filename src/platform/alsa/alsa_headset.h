#pragma once

#include <string>
#include <vector>

#include "platform/alsa/alsa_cards.h"
#include "platform/headset_probe.h"

namespace orma {

/// A jack control of a card: its name, and whether something is plugged in.
struct AlsaJack {
    std::string name;
    bool plugged = false;
};

/// What the jacks say about a headset: 1, 0, or -1 when no jack tells. Jacks named after a headset
/// count before those of headphones; the `alternative` is to ask headphones alone. "Phantom" jacks
/// cannot sense anything.
[[nodiscard]] int HeadsetStateOf(const std::vector<AlsaJack>& jacks, bool alternative);

/// Headset state by the jack controls of all sound cards. UI thread; some milliseconds a card.
class AlsaHeadset : public HeadsetProbe {
  public:
    explicit AlsaHeadset(std::string folder = kAlsaFolder) : folder_(std::move(folder)) {}

    [[nodiscard]] int State(bool alternativeKey) override;

  private:
    std::string folder_;
};

}  // namespace orma
