#include "platform/alsa/alsa_headset.h"

#include <memory>

#include <alsa/asoundlib.h>

namespace orma {
namespace {

struct CloseControl {
    void operator()(snd_ctl_t* control) const { snd_ctl_close(control); }
};

void AddJacks(int card, std::vector<AlsaJack>& jacks) {
    snd_ctl_t* opened = nullptr;
    const std::string name = "hw:" + std::to_string(card);
    if (snd_ctl_open(&opened, name.c_str(), SND_CTL_NONBLOCK | SND_CTL_READONLY) < 0) return;
    const std::unique_ptr<snd_ctl_t, CloseControl> control(opened);
    snd_ctl_elem_list_t* list = nullptr;
    snd_ctl_elem_list_alloca(&list);
    if (snd_ctl_elem_list(opened, list) < 0) return;
    const unsigned count = snd_ctl_elem_list_get_count(list);
    if (count == 0 || snd_ctl_elem_list_alloc_space(list, count) < 0) return;
    if (snd_ctl_elem_list(opened, list) == 0) {
        for (unsigned i = 0; i < snd_ctl_elem_list_get_used(list); ++i) {
            const std::string element = snd_ctl_elem_list_get_name(list, i);
            if (!element.ends_with(" Jack")) continue;
            snd_ctl_elem_value_t* value = nullptr;
            snd_ctl_elem_value_alloca(&value);
            snd_ctl_elem_value_set_numid(value, snd_ctl_elem_list_get_numid(list, i));
            if (snd_ctl_elem_read(opened, value) == 0)
                jacks.push_back({element, snd_ctl_elem_value_get_boolean(value, 0) != 0});
        }
    }
    snd_ctl_elem_list_free_space(list);
}

int StateOf(const std::vector<AlsaJack>& jacks, const std::string& word) {
    int state = -1;
    for (const AlsaJack& jack : jacks)
        if (jack.name.find(word) != jack.name.npos && jack.name.find("Phantom") == jack.name.npos)
            state = state == 1 || jack.plugged ? 1 : 0;
    return state;
}

}  // namespace

int HeadsetStateOf(const std::vector<AlsaJack>& jacks, bool alternative) {
    const int headset = alternative ? -1 : StateOf(jacks, "Headset");
    return headset >= 0 ? headset : StateOf(jacks, "Headphone");
}

int AlsaHeadset::State(bool alternativeKey) {
    const std::vector<AlsaCard> cards = ParseAlsaCards(ReadAlsaListing(folder_, "cards"));
    if (cards.empty()) return -1;
    SilenceAlsa();
    std::vector<AlsaJack> jacks;
    for (const AlsaCard& card : cards)
        AddJacks(card.number, jacks);
    return HeadsetStateOf(jacks, alternativeKey);
}

}  // namespace orma
