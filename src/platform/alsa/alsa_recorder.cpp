#include "platform/alsa/alsa_recorder.h"

#include <algorithm>

#include <alsa/asoundlib.h>

#include "base/trace.h"
#include "platform/alsa/alsa_mixer.h"

namespace orma {
namespace {

bool OpensIn(int card, const WaveFormat& format) {
    SilenceAlsa();
    snd_pcm_t* pcm = nullptr;
    const std::string name = "plughw:" + std::to_string(card);
    const int opened = snd_pcm_open(&pcm, name.c_str(), SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (opened == -EBUSY) return true;  // it is there, and somebody plays through it
    if (opened < 0) return false;
    snd_pcm_hw_params_t* params = nullptr;
    snd_pcm_hw_params_alloca(&params);
    const bool takes = snd_pcm_hw_params_any(pcm, params) >= 0 &&
                       snd_pcm_hw_params_test_format(pcm, params, SND_PCM_FORMAT_S16_LE) == 0 &&
                       snd_pcm_hw_params_test_channels(pcm, params, format.channels) == 0 &&
                       snd_pcm_hw_params_test_rate(pcm, params, format.samplesPerSecond, 0) == 0;
    snd_pcm_close(pcm);
    return takes;
}

}  // namespace

std::vector<Text> AlsaRecorder::OutputNames() {
    const std::vector<AlsaCard> cards = ParseAlsaCards(ReadAlsaListing(folder_, "cards"));
    if (cards.empty()) return {};
    std::vector<Text> names{u"default"};
    for (const AlsaCard& card : cards)
        names.push_back(FromUtf8(card.name));
    return names;
}

WaveResult AlsaRecorder::Query(std::uint32_t output, const WaveFormat& format,
                               std::uint32_t message, RecorderMessage subCode,
                               std::span<std::uint8_t> parameter) {
    const std::vector<AlsaCard> cards = ParseAlsaCards(ReadAlsaListing(folder_, "cards"));
    if (output < 1 || output > cards.size()) return WaveResult::kNoDevice;
    const int card = cards[output - 1].number;
    if (!OpensIn(card, format)) return WaveResult::kBadFormat;
    card_ = card;
    return Send(RecorderLine::kOutput, message, subCode, parameter);
}

WaveResult AlsaRecorder::Send(RecorderLine, std::uint32_t message, RecorderMessage subCode,
                              std::span<std::uint8_t> parameter) {
    if (!card_) return WaveResult::kNoDevice;
    if (message != kRecorderDriverMessage) return WaveResult::kFailed;
    switch (subCode) {
        case RecorderMessage::kConfiguration:
            Trace("alsa: recorder configuration not sent, the card has no place for it");
            return WaveResult::kOk;
        case RecorderMessage::kInformation:
            if (parameter.size() != RecorderInformation::kBytes) return WaveResult::kFailed;
            std::ranges::copy(RecorderInformation{}.Encode(), parameter.begin());
            return WaveResult::kOk;
        case RecorderMessage::kGain: {
            if (parameter.size() != 4) return WaveResult::kFailed;
            const double code = LoadLe<std::uint32_t>(parameter.data());
            return SetMixerVolume(*card_, MixerSide::kCapture, code * 0.5 - 96, (code - 126) / 128);
        }
        case RecorderMessage::kVolume: {
            if (parameter.size() != 4) return WaveResult::kFailed;
            const double code = LoadLe<std::uint32_t>(parameter.data());
            return SetMixerVolume(*card_, MixerSide::kPlayback, code - 121, (code - 111) / 16);
        }
        case RecorderMessage::kValue:
            return WaveResult::kFailed;
    }
    return WaveResult::kFailed;
}

}  // namespace orma
