#include "platform/portaudio/portaudio_wave_system.h"

#include <algorithm>

#include "base/trace.h"

namespace orma {
namespace {

constexpr const char* kNoAnswer = "the sound system does not answer";

bool IsSupported(const WaveFormat& format) {
    return format.bitsPerSample == 16 && (format.channels == 1 || format.channels == 2) &&
           format.blockAlign == 2 * format.channels && format.samplesPerSecond >= 1000 &&
           format.samplesPerSecond <= 192000;
}

}  // namespace

PortAudioWaveSystem::PortAudioWaveSystem(EventLoop& loop, PortAudioLimits limits)
    : loop_(loop), limits_(limits) {
    wakeup_ = loop.CreateWakeup([this, life = std::weak_ptr(life_)] {
        if (!life.expired()) PumpAll();
    });
}

PortAudioWaveSystem::~PortAudioWaveSystem() {
    worker_.Post([library = library_] { library->Terminate(); });
    if (worker_.Finish(limits_.call)) return;
    Trace("portaudio: closing: %s", kNoAnswer);
    // An audio callback may still signal it: better never destroyed than too early.
    (void)wakeup_.release();
}

std::optional<PaLibrary::Devices> PortAudioWaveSystem::List() {
    struct Outcome {
        PaLibrary::Devices devices;
        std::string problem;
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered = worker_.Run(
        [library = library_, outcome] { outcome->devices = library->List(outcome->problem); }, {},
        limits_.call);
    if (!answered || !outcome->problem.empty())
        Trace("portaudio: device list: %s", answered ? outcome->problem.c_str() : kNoAnswer);
    return answered ? std::optional(outcome->devices) : std::nullopt;
}

std::vector<WaveDeviceInfo> PortAudioWaveSystem::Inputs() {
    return List().value_or(PaLibrary::Devices()).inputs;
}

std::vector<WaveDeviceInfo> PortAudioWaveSystem::Outputs() {
    return List().value_or(PaLibrary::Devices()).outputs;
}

WaveResult PortAudioWaveSystem::OpenInput(const Text& name, const WaveFormat& format,
                                          WaveInEvents& events,
                                          std::unique_ptr<WaveInDevice>& device) {
    if (!IsSupported(format)) return WaveResult::kBadFormat;
    const std::size_t ringBytes =
        std::size_t{limits_.ringSeconds} * format.samplesPerSecond * format.blockAlign;
    const auto capture = std::make_shared<Capture>(format, ringBytes, *wakeup_);
    struct Outcome {
        WaveResult result = WaveResult::kFailed;
        std::string problem;
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered = worker_.Run(
        [library = library_, capture, outcome, utf8 = ToUtf8(name)] {
            outcome->result = library->Open(utf8, *capture, outcome->problem);
        },
        [library = library_, capture] { library->Close(*capture); }, limits_.call);
    const WaveResult result = answered ? outcome->result : WaveResult::kFailed;
    if (result != WaveResult::kOk) {
        Trace("portaudio: input \"%s\": %s", ToUtf8(name).c_str(),
              answered ? outcome->problem.c_str() : kNoAnswer);
        return result;
    }
    auto opened = std::make_unique<PortAudioWaveIn>(
        loop_, worker_, library_, capture, limits_, events,
        [this](PortAudioWaveIn& closed) { std::erase(inputs_, &closed); });
    inputs_.push_back(opened.get());
    device = std::move(opened);
    return WaveResult::kOk;
}

WaveResult PortAudioWaveSystem::OpenOutput(const Text&, const WaveFormat&, WaveOutEvents&,
                                           std::unique_ptr<WaveOutDevice>&) {
    Trace("portaudio: no output");
    return WaveResult::kNoDevice;
}

WaveResult PortAudioWaveSystem::SetOutputVolume(std::uint16_t, std::uint16_t) {
    return WaveResult::kNoDevice;
}

void PortAudioWaveSystem::PumpAll() {
    pumped_ = inputs_;
    for (PortAudioWaveIn* input : pumped_)
        // The handler of one may have closed another.
        if (std::find(inputs_.begin(), inputs_.end(), input) != inputs_.end()) input->Pump();
}

}  // namespace orma
