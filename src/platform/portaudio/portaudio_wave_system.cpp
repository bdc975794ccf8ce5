#include "platform/portaudio/portaudio_wave_system.h"

#include <algorithm>

#include "base/trace.h"
#include "platform/portaudio/portaudio_wave_in.h"
#include "platform/portaudio/portaudio_wave_out.h"

namespace orma {
namespace {

constexpr const char* kNoAnswer = "the sound system does not answer";

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

template <class Stream>
WaveResult PortAudioWaveSystem::OpenStream(const char* kind, const Text& name,
                                           const std::shared_ptr<Stream>& stream) {
    struct Outcome {
        WaveResult result = WaveResult::kFailed;
        std::string problem;
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered = worker_.Run(
        [library = library_, stream, outcome, utf8 = ToUtf8(name)] {
            outcome->result = library->Open(utf8, *stream, outcome->problem);
        },
        [library = library_, stream] {
            std::string ignored;
            (void)library->Close(*stream, ignored);
        },
        limits_.call);
    const WaveResult result = answered ? outcome->result : WaveResult::kFailed;
    if (result != WaveResult::kOk)
        Trace("portaudio: %s \"%s\": %s", kind, ToUtf8(name).c_str(),
              answered ? outcome->problem.c_str() : kNoAnswer);
    return result;
}

PortAudioHost PortAudioWaveSystem::Host() {
    return {loop_, worker_, library_, limits_,
            [this](PortAudioDevice& closed) { std::erase(open_, &closed); }};
}

WaveResult PortAudioWaveSystem::OpenInput(const Text& name, const WaveFormat& format,
                                          WaveInEvents& events,
                                          std::unique_ptr<WaveInDevice>& device) {
    if (!IsSupported(format)) return WaveResult::kBadFormat;
    const std::size_t ringBytes =
        std::size_t{limits_.ringSeconds} * format.samplesPerSecond * format.blockAlign;
    const auto capture = std::make_shared<Capture>(format, ringBytes, *wakeup_);
    const WaveResult result = OpenStream("input", name, capture);
    if (result != WaveResult::kOk) return result;
    auto opened = std::make_unique<PortAudioWaveIn>(Host(), capture, events);
    open_.push_back(opened.get());
    device = std::move(opened);
    return result;
}

WaveResult PortAudioWaveSystem::OpenOutput(const Text& name, const WaveFormat& format,
                                           WaveOutEvents& events,
                                           std::unique_ptr<WaveOutDevice>& device) {
    if (!IsSupported(format)) return WaveResult::kBadFormat;
    const std::size_t ringBytes =
        std::size_t{PortAudioWaveOut::kRingSeconds} * format.samplesPerSecond * format.blockAlign;
    const auto playback = std::make_shared<Playback>(format, ringBytes, *wakeup_, volume_);
    const WaveResult result = OpenStream("output", name, playback);
    if (result != WaveResult::kOk) return result;
    auto opened = std::make_unique<PortAudioWaveOut>(Host(), playback, events);
    open_.push_back(opened.get());
    device = std::move(opened);
    return result;
}

WaveResult PortAudioWaveSystem::SetOutputVolume(std::uint16_t left, std::uint16_t right) {
    volume_->Set(left, right);
    return WaveResult::kOk;
}

void PortAudioWaveSystem::PumpAll() {
    // A handler may open and close devices, and let events through that come back here. Backwards,
    // none is left out whatever goes meanwhile; one may be looked at twice.
    for (std::size_t i = open_.size(); i-- > 0;)
        if (i < open_.size()) open_[i]->Pump();
}

}  // namespace orma
