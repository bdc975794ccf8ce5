#include "cli/hardware.h"

#include <charconv>
#include <optional>

#include "platform/alsa/alsa_headset.h"
#include "platform/alsa/alsa_recorder.h"
#include "platform/alsa/alsa_spdif_card.h"
#include "platform/portaudio/portaudio_wave_system.h"
#include "platform/simulated/simulated_card.h"
#include "platform/simulated/simulated_recorder.h"
#include "platform/simulated/simulated_recorder_waves.h"
#include "platform/virtual_audio/virtual_wave_system.h"

namespace orma::cli {
namespace {

constexpr std::string_view kAlsa = "alsa";

/// No hardware that could tell.
class UnknownHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool /*alternativeKey*/) override { return -1; }
};

std::unique_ptr<WaveSystem> MakeWaves(const Globals& globals, EventLoop& loop) {
    if (globals.audio == kDefaultAudio) return std::make_unique<PortAudioWaveSystem>(loop);
    std::string error;
    auto options = ParseVirtualAudio(globals.audio, error);
    if (!options) throw UsageError("--audio: " + error);
    for (Text* file : {&options->inputFile, &options->outputFile, &options->countFile})
        if (!file->empty()) *file = CallerPath(ToUtf8(*file));
    return std::make_unique<VirtualWaveSystem>(loop, *options);
}

/// What simulated hardware hears is the microphone too: a recorder has no other sound, and beside a
/// card any microphone will do.
Globals WithMicrophone(Globals globals, const SimulatedOptions& options) {
    const Text& file = options.recorder ? options.recorder->file : options.card->file;
    if (globals.audio == kDefaultAudio) globals.audio = "virtual:in=" + ToUtf8(file);
    return globals;
}

Hardware MakeSimulated(const Globals& globals, EventLoop& loop) {
    std::string error;
    const auto options = ParseSimulated(globals.hardware, error);
    if (!options) throw UsageError("--hardware: " + error);
    Hardware hardware{.headset = std::make_unique<UnknownHeadset>(),
                      .waves = MakeWaves(WithMicrophone(globals, *options), loop)};
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
AlsaSpdifOptions ParseAlsa(std::string_view text) {
    constexpr std::string_view kCard = ":card=";
    constexpr std::string_view kRate = ",rate=";
    text.remove_prefix(kAlsa.size());
    AlsaSpdifOptions options;
    if (text.empty()) return options;
    bool good = text.starts_with(kCard);
    if (const std::size_t at = text.rfind(kRate); good && at != text.npos) {
        const std::string_view number = text.substr(at + kRate.size());
        const auto [end, problem] =
            std::from_chars(number.data(), number.data() + number.size(), options.rate);
        good = problem == std::errc() && end == number.data() + number.size();
        text = text.substr(0, at);
    }
    if (!good || text.size() == kCard.size())
        throw UsageError("--hardware: ALSA hardware is written alsa or alsa:card=PCM[,rate=HZ].");
    options.pcm = text.substr(kCard.size());
    return options;
}

}  // namespace

Hardware MakeHardware(const Globals& globals, EventLoop& loop) {
    if (globals.hardware.starts_with("simulated")) return MakeSimulated(globals, loop);
    Hardware hardware{.waves = MakeWaves(globals, loop)};
    if (globals.hardware == "none") {
        hardware.headset = std::make_unique<UnknownHeadset>();
        return hardware;
    }
    if (!globals.hardware.starts_with(kAlsa))
        throw UsageError("--hardware: choose alsa, simulated:... or none");
    hardware.card = std::make_unique<AlsaSpdifCard>(ParseAlsa(globals.hardware));
    hardware.recorder = std::make_unique<AlsaRecorder>();
    hardware.headset = std::make_unique<AlsaHeadset>();
    return hardware;
}

}  // namespace orma::cli
