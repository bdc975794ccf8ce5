#include "machine/hardware.h"

#include "base/number.h"
#include "platform/alsa/alsa_headset.h"
#include "platform/alsa/alsa_recorder.h"
#include "platform/alsa/alsa_spdif_card.h"
#include "platform/portaudio/portaudio_wave_system.h"
#include "platform/simulated/simulated_card.h"
#include "platform/simulated/simulated_recorder.h"
#include "platform/simulated/simulated_recorder_waves.h"
#include "platform/virtual_audio/virtual_wave_system.h"

namespace orma {
namespace {

constexpr std::string_view kAlsa = "alsa";

/// No hardware that could tell.
class UnknownHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool /*alternativeKey*/) override { return -1; }
};

/// Null when --audio is not understood.
std::unique_ptr<WaveSystem> MakeWaves(const std::string& audio, EventLoop& loop,
                                      std::string& error) {
    if (audio == kDefaultAudio) return std::make_unique<PortAudioWaveSystem>(loop);
    auto options = ParseVirtualAudio(audio, error);
    if (!options) {
        error = "--audio: " + error;
        return nullptr;
    }
    for (Text* file : {&options->inputFile, &options->outputFile, &options->countFile})
        if (!file->empty()) *file = CallerPath(ToUtf8(*file));
    return std::make_unique<VirtualWaveSystem>(loop, *options);
}

/// What simulated hardware hears is the microphone too: a recorder has no other sound, and beside a
/// card any microphone will do.
std::string WithMicrophone(const std::string& audio, const SimulatedOptions& options) {
    const Text& file = options.recorder ? options.recorder->file : options.card->file;
    return audio == kDefaultAudio ? "virtual:in=" + ToUtf8(file) : audio;
}

std::optional<Hardware> MakeSimulated(const MachineOptions& chosen, EventLoop& loop,
                                      std::string& error) {
    const auto options = ParseSimulated(chosen.hardware, error);
    if (!options) {
        error = "--hardware: " + error;
        return std::nullopt;
    }
    Hardware hardware{.headset = std::make_unique<UnknownHeadset>(),
                      .waves = MakeWaves(WithMicrophone(chosen.audio, *options), loop, error)};
    if (!hardware.waves) return std::nullopt;
    if (options->card) {
        SimulatedCardOptions card = *options->card;
        card.file = CallerPath(ToUtf8(card.file));
        hardware.card = std::make_unique<SimulatedCard>(card);
    }
    if (options->recorder) {
        auto recorder = std::make_unique<SimulatedRecorder>(*options->recorder);
        hardware.waves =
            std::make_unique<SimulatedRecorderWaves>(std::move(hardware.waves), *recorder);
        hardware.recorder = std::move(recorder);
    }
    return hardware;
}

/// "alsa", "alsa:card=PCM" or "alsa:card=PCM,rate=HZ"; commas may stand in the name.
std::optional<AlsaSpdifOptions> ParseAlsa(std::string_view text) {
    constexpr std::string_view kCard = ":card=";
    constexpr std::string_view kRate = ",rate=";
    text.remove_prefix(kAlsa.size());
    AlsaSpdifOptions options;
    if (text.empty()) return options;
    bool good = text.starts_with(kCard);
    if (const std::size_t at = text.rfind(kRate); good && at != text.npos) {
        const auto rate = ParseNumber<std::uint32_t>(text.substr(at + kRate.size()));
        good = rate.has_value();
        options.rate = rate.value_or(0);
        text = text.substr(0, at);
    }
    if (!good || text.size() == kCard.size()) return std::nullopt;
    options.pcm = text.substr(kCard.size());
    return options;
}

}  // namespace

std::optional<Hardware> MakeHardware(const MachineOptions& options, EventLoop& loop,
                                     std::string& error) {
    if (options.hardware.starts_with("simulated")) return MakeSimulated(options, loop, error);
    Hardware hardware{.waves = MakeWaves(options.audio, loop, error)};
    if (!hardware.waves) return std::nullopt;
    if (options.hardware == "none") {
        hardware.headset = std::make_unique<UnknownHeadset>();
        return hardware;
    }
    if (!options.hardware.starts_with(kAlsa)) {
        error = "--hardware: choose alsa, simulated:... or none";
        return std::nullopt;
    }
    const auto card = ParseAlsa(options.hardware);
    if (!card) {
        error = "--hardware: ALSA hardware is written alsa or alsa:card=PCM[,rate=HZ].";
        return std::nullopt;
    }
    hardware.card = std::make_unique<AlsaSpdifCard>(*card);
    hardware.recorder = std::make_unique<AlsaRecorder>();
    hardware.headset = std::make_unique<AlsaHeadset>();
    return hardware;
}

}  // namespace orma
