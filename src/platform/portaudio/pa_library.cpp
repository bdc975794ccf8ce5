#include "platform/portaudio/pa_library.h"

#include <alsa/asoundlib.h>
#include <dlfcn.h>
#include <portaudio.h>

namespace orma {
namespace {

/// Callbacks a second: a compromise between wake-ups and the delay of the level display.
constexpr std::uint32_t kCallbacksPerSecond = 20;

void IgnoreAlsa(const char*, int, const char*, int, const char*, ...) {}
void IgnoreJack(const char*) {}

/// The libraries below PortAudio write some hundred lines to standard error while they look for
/// devices; on a command line that would bury the program's own words. JACK is looked up in the
/// process because not every PortAudio is built with it.
void SilenceLibraries() {
    snd_lib_error_set_handler(IgnoreAlsa);
    using Setter = void (*)(void (*)(const char*));
    for (const char* hook : {"jack_set_error_function", "jack_set_info_function"})
        if (const auto set = reinterpret_cast<Setter>(dlsym(RTLD_DEFAULT, hook))) set(IgnoreJack);
}

/// The audio thread: copies and wakes, nothing else.
int OnAudio(const void* input, void*, unsigned long frames, const PaStreamCallbackTimeInfo*,
            PaStreamCallbackFlags flags, void* user) {
    auto& capture = *static_cast<Capture*>(user);
    if (!capture.capturing.load(std::memory_order_acquire)) return paContinue;
    // The driver does not tell how much it lost: one frame stands for each report.
    std::uint64_t lost = (flags & paInputOverflow) != 0 ? 1 : 0;
    const std::size_t align = capture.format.blockAlign;
    if (input != nullptr) {
        const ByteSpan bytes(static_cast<const std::uint8_t*>(input), frames * align);
        lost += (bytes.size() - capture.ring.Write(bytes, align)) / align;
    }
    if (lost != 0) capture.lostFrames.fetch_add(lost, std::memory_order_relaxed);
    capture.callbacks.fetch_add(1, std::memory_order_release);
    capture.wakeup.Signal();
    return paContinue;
}

void OnFinished(void* user) {
    auto& capture = *static_cast<Capture*>(user);
    if (!capture.capturing.load(std::memory_order_acquire)) return;
    capture.finished.store(true, std::memory_order_release);
    capture.wakeup.Signal();
}

WaveResult Fail(PaError error, std::string& problem) {
    problem = Pa_GetErrorText(error);
    switch (error) {
        case paInvalidSampleRate:
        case paInvalidChannelCount:
        case paSampleFormatNotSupported:
            return WaveResult::kBadFormat;
        case paInvalidDevice:
        case paDeviceUnavailable:
            return WaveResult::kNoDevice;
        default:
            return WaveResult::kFailed;
    }
}

WaveDeviceInfo Describe(const PaDeviceInfo& info, int channels, bool isDefault) {
    return {FromUtf8(info.name), static_cast<std::uint16_t>(channels), isDefault};
}

}  // namespace

bool PaLibrary::Initialise(std::string& problem) {
    if (initialised_) return true;
    SilenceLibraries();
    const PaError error = Pa_Initialize();
    initialised_ = error == paNoError;
    if (!initialised_) (void)Fail(error, problem);
    return initialised_;
}

void PaLibrary::Terminate() {
    if (!initialised_) return;
    Pa_Terminate();
    initialised_ = false;
    // ALSA decides from its configuration, read once, whether a sound server is the default.
    snd_config_update_free_global();
}

PaLibrary::Devices PaLibrary::List(std::string& problem) {
    if (openStreams_ == 0) Terminate();
    Devices devices;
    if (!Initialise(problem)) return devices;
    for (int i = 0; i < Pa_GetDeviceCount(); ++i) {
        const PaDeviceInfo& info = *Pa_GetDeviceInfo(i);
        if (info.maxInputChannels > 0)
            devices.inputs.push_back(
                Describe(info, info.maxInputChannels, i == Pa_GetDefaultInputDevice()));
        if (info.maxOutputChannels > 0)
            devices.outputs.push_back(
                Describe(info, info.maxOutputChannels, i == Pa_GetDefaultOutputDevice()));
    }
    return devices;
}

WaveResult PaLibrary::Open(const std::string& name, Capture& capture, std::string& problem) {
    const bool mayBeStale = initialised_;
    if (!Initialise(problem)) return WaveResult::kFailed;
    WaveResult result = OpenNow(name, capture, problem);
    if (result == WaveResult::kOk || !mayBeStale || openStreams_ > 0) return result;
    // The device may have come, or its server gone and come back, since the list was made.
    Terminate();
    return Initialise(problem) ? OpenNow(name, capture, problem) : WaveResult::kFailed;
}

WaveResult PaLibrary::OpenNow(const std::string& name, Capture& capture, std::string& problem) {
    problem = "no such input";
    WaveResult result = WaveResult::kNoDevice;
    const int preferred = Pa_GetDefaultInputDevice();
    if (name.empty() && preferred != paNoDevice) result = OpenDevice(preferred, capture, problem);
    if (name.empty() && preferred != paNoDevice && result != WaveResult::kBadFormat) return result;
    for (int i = 0; i < Pa_GetDeviceCount() && result != WaveResult::kOk; ++i) {
        const PaDeviceInfo& info = *Pa_GetDeviceInfo(i);
        if (info.maxInputChannels < 1 || (name.empty() && i == preferred)) continue;
        if (name.empty() || name == info.name) result = OpenDevice(i, capture, problem);
        if (name == info.name) break;
    }
    return result;
}

WaveResult PaLibrary::OpenDevice(int device, Capture& capture, std::string& problem) {
    const WaveFormat& format = capture.format;
    PaStreamParameters parameters{};
    parameters.device = device;
    parameters.channelCount = format.channels;
    parameters.sampleFormat = paInt16;
    parameters.suggestedLatency = Pa_GetDeviceInfo(device)->defaultHighInputLatency;
    const PaError error = Pa_OpenStream(
        &capture.stream, &parameters, nullptr, format.samplesPerSecond,
        format.samplesPerSecond / kCallbacksPerSecond, paClipOff | paDitherOff, OnAudio, &capture);
    if (error != paNoError) {
        capture.stream = nullptr;
        return Fail(error, problem);
    }
    ++openStreams_;
    Pa_SetStreamFinishedCallback(capture.stream, OnFinished);
    return WaveResult::kOk;
}

WaveResult PaLibrary::Start(Capture& capture, std::string& problem) {
    // A stream whose server ended still counts as running until it is stopped.
    Abort(capture);
    capture.finished = false;
    capture.capturing = true;
    const PaError error = Pa_StartStream(capture.stream);
    if (error == paNoError) return WaveResult::kOk;
    capture.capturing = false;
    return Fail(error, problem);
}

void PaLibrary::Abort(Capture& capture) {
    if (capture.stream != nullptr && Pa_IsStreamStopped(capture.stream) == 0)
        Pa_AbortStream(capture.stream);
}

void PaLibrary::Close(Capture& capture) {
    if (capture.stream == nullptr) return;
    Abort(capture);
    Pa_CloseStream(capture.stream);
    capture.stream = nullptr;
    --openStreams_;
}

}  // namespace orma
