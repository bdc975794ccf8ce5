#include "platform/alsa/alsa_mixer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string_view>

#include <alsa/asoundlib.h>

#include "base/trace.h"
#include "platform/alsa/alsa_cards.h"

namespace orma {
namespace {

struct CloseMixer {
    void operator()(snd_mixer_t* mixer) const { snd_mixer_close(mixer); }
};
using Mixer = std::unique_ptr<snd_mixer_t, CloseMixer>;

Mixer OpenMixer(int card) {
    SilenceAlsa();
    snd_mixer_t* opened = nullptr;
    if (snd_mixer_open(&opened, 0) < 0) return nullptr;
    Mixer mixer(opened);
    const std::string name = "hw:" + std::to_string(card);
    if (snd_mixer_attach(opened, name.c_str()) < 0 ||
        snd_mixer_selem_register(opened, nullptr, nullptr) < 0 || snd_mixer_load(opened) < 0)
        return nullptr;
    return mixer;
}

bool SetVolume(snd_mixer_elem_t* element, MixerSide side, double decibels, double share) {
    const auto hundredths = std::lround(decibels * 100);
    const bool capture = side == MixerSide::kCapture;
    if ((capture ? snd_mixer_selem_set_capture_dB_all(element, hundredths, 0)
                 : snd_mixer_selem_set_playback_dB_all(element, hundredths, 0)) == 0)
        return true;
    long low = 0;
    long high = 0;
    if ((capture ? snd_mixer_selem_get_capture_volume_range(element, &low, &high)
                 : snd_mixer_selem_get_playback_volume_range(element, &low, &high)) < 0)
        return false;
    const long value = low + std::lround(share * static_cast<double>(high - low));
    return (capture ? snd_mixer_selem_set_capture_volume_all(element, value)
                    : snd_mixer_selem_set_playback_volume_all(element, value)) == 0;
}

}  // namespace

std::optional<std::size_t> PickMixerElement(const std::vector<MixerElement>& elements,
                                            MixerSide side) {
    static constexpr std::array<std::string_view, 4> kCapture{"Mic", "Capture", "Line", "Digital"};
    static constexpr std::array<std::string_view, 4> kPlayback{"PCM", "Master", "Speaker",
                                                               "Headphone"};
    const auto rank = [&](const MixerElement& element) {
        const auto& names = side == MixerSide::kCapture ? kCapture : kPlayback;
        return std::ranges::find(names, element.name) - names.begin();
    };
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const MixerElement& element = elements[i];
        if (!(side == MixerSide::kCapture ? element.captureVolume : element.playbackVolume))
            continue;
        if (!best || rank(element) < rank(elements[*best])) best = i;
    }
    return best;
}

WaveResult SetMixerVolume(int card, MixerSide side, double decibels, double share) {
    const Mixer mixer = OpenMixer(card);
    if (!mixer) return WaveResult::kNoDevice;
    std::vector<snd_mixer_elem_t*> handles;
    std::vector<MixerElement> elements;
    for (snd_mixer_elem_t* element = snd_mixer_first_elem(mixer.get()); element != nullptr;
         element = snd_mixer_elem_next(element)) {
        handles.push_back(element);
        elements.push_back({snd_mixer_selem_get_name(element),
                            snd_mixer_selem_has_capture_volume(element) != 0,
                            snd_mixer_selem_has_playback_volume(element) != 0});
    }
    const auto picked = PickMixerElement(elements, side);
    if (!picked) return WaveResult::kNoDevice;
    const bool set = SetVolume(handles[*picked], side, decibels, share);
    Trace("alsa: card %d \"%s\" %.1f dB: %s", card, elements[*picked].name.c_str(), decibels,
          set ? "set" : "failed");
    return set ? WaveResult::kOk : WaveResult::kFailed;
}

}  // namespace orma
