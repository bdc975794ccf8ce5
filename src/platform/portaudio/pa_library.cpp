#include "platform/portaudio/pa_library.h"

#include <algorithm>
#include <string_view>

#include <alsa/asoundlib.h>
#include <dlfcn.h>
#include <portaudio.h>

namespace orma {
namespace {

/// Callbacks a second: a compromise between wake-ups and the delay of the level display.
constexpr std::uint32_t kCallbacksPerSecond = 20;

/// Seconds: what a driver says beyond it is no latency but a mistake.
constexpr double kMostLatency = 2.0;

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

/// Devices of ALSA that only convert what goes to another one. PortAudio opens every device to look
/// at it, and with the first of these a video library comes into the process that alone takes as
/// much memory as the program.
constexpr std::string_view kConverters[] = {"a52",   "lavrate", "samplerate", "speexrate",
                                            "speex", "upmix",   "vdownmix"};

/// Does a definition stand on the device of that name ("a52", also as "plug:a52:0")?
bool Mentions(snd_config_t* definition, std::string_view name) {
    if (const char* text = nullptr; snd_config_get_string(definition, &text) == 0)
        return text != nullptr && std::string_view(text).find(name) != std::string_view::npos;
    if (snd_config_get_type(definition) != SND_CONFIG_TYPE_COMPOUND) return false;
    snd_config_iterator_t at{};
    snd_config_iterator_t next{};
    snd_config_for_each(at, next, definition) {
        if (Mentions(snd_config_iterator_entry(at), name)) return true;
    }
    return false;
}

/// Takes the converters that no other device stands on out of what PortAudio is about to read.
void HideConverters() {
    snd_config_t* devices = nullptr;
    if (snd_config_update() < 0 || snd_config_search(snd_config, "pcm", &devices) < 0) return;
    for (const std::string_view name : kConverters) {
        snd_config_t* converter = nullptr;
        if (snd_config_search(devices, std::string(name).c_str(), &converter) < 0) continue;
        bool needed = false;
        snd_config_iterator_t at{};
        snd_config_iterator_t next{};
        snd_config_for_each(at, next, devices) {
            snd_config_t* const other = snd_config_iterator_entry(at);
            needed = needed || (other != converter && Mentions(other, name));
        }
        if (!needed) snd_config_delete(converter);
    }
}

/// The audio thread: copies and wakes, nothing else.
int OnAudio(const void* input, void*, unsigned long frames, const PaStreamCallbackTimeInfo*,
            PaStreamCallbackFlags flags, void* user) {
    auto& capture = *static_cast<Capture*>(user);
    if (!capture.gate.load(std::memory_order_acquire)) return paContinue;
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

/// The same for the loudspeaker: copies from the ring what is there, and silence behind it.
int OnPlayback(const void*, void* output, unsigned long frames, const PaStreamCallbackTimeInfo*,
               PaStreamCallbackFlags flags, void* user) {
    auto& playback = *static_cast<Playback*>(user);
    const std::size_t align = playback.format.blockAlign;
    const std::span<std::uint8_t> bytes(static_cast<std::uint8_t*>(output), frames * align);
    std::size_t got = 0;
    if (playback.gate.load(std::memory_order_acquire)) {
        playback.ring.DiscardTo(playback.discardTo.load(std::memory_order_acquire));
        std::uint64_t idle = playback.idleFrames.load(std::memory_order_relaxed);
        got = playback.ring.Read(bytes);
        if (got != 0) {
            if (playback.sounded) playback.gapFrames.fetch_add(idle, std::memory_order_relaxed);
            // The driver does not tell how long it was silent: one frame stands for each report.
            if (playback.sounded && (flags & paOutputUnderflow) != 0)
                playback.gapFrames.fetch_add(1, std::memory_order_relaxed);
            playback.sounded = true;
            idle = 0;
        }
        playback.idleFrames.store(idle + (bytes.size() - got) / align, std::memory_order_release);
    }
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(got), bytes.end(), std::uint8_t{0});
    playback.volume->Apply({static_cast<std::int16_t*>(output), got / sizeof(std::int16_t)},
                           playback.format.channels);
    playback.callbacks.fetch_add(1, std::memory_order_release);
    playback.wakeup.Signal();
    return paContinue;
}

void OnFinished(void* user) {
    auto& stream = *static_cast<PaStream*>(user);
    if (!stream.gate.load(std::memory_order_acquire)) return;
    stream.finished.store(true, std::memory_order_release);
    stream.wakeup.Signal();
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
    HideConverters();
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

/// What differs between inputs and outputs.
struct PaLibrary::Direction {
    const char* none;  // of this name
    int PaDeviceInfo::*channels;
    PaDeviceIndex (*preferred)();
    double PaDeviceInfo::*latency;
    PaStreamCallback* callback;
    bool output;
};

WaveResult PaLibrary::Open(const std::string& name, Capture& capture, std::string& problem) {
    return Open(name,
                {"no such input", &PaDeviceInfo::maxInputChannels, Pa_GetDefaultInputDevice,
                 &PaDeviceInfo::defaultHighInputLatency, OnAudio, false},
                capture, problem);
}

WaveResult PaLibrary::Open(const std::string& name, Playback& playback, std::string& problem) {
    const WaveResult result =
        Open(name,
             {"no such output", &PaDeviceInfo::maxOutputChannels, Pa_GetDefaultOutputDevice,
              &PaDeviceInfo::defaultHighOutputLatency, OnPlayback, true},
             playback, problem);
    if (result != WaveResult::kOk) return result;
    const double seconds = Pa_GetStreamInfo(playback.stream)->outputLatency;
    playback.latencyFrames = static_cast<std::uint32_t>(std::clamp(seconds, 0.0, kMostLatency) *
                                                        playback.format.samplesPerSecond) +
                             playback.format.samplesPerSecond / kCallbacksPerSecond;
    return result;
}

WaveResult PaLibrary::Open(const std::string& name, const Direction& way, PaStream& stream,
                           std::string& problem) {
    const bool mayBeStale = initialised_;
    if (!Initialise(problem)) return WaveResult::kFailed;
    WaveResult result = OpenNow(name, way, stream, problem);
    if (result == WaveResult::kOk || !mayBeStale || openStreams_ > 0) return result;
    // The device may have come, or its server gone and come back, since the list was made.
    Terminate();
    return Initialise(problem) ? OpenNow(name, way, stream, problem) : WaveResult::kFailed;
}

WaveResult PaLibrary::OpenNow(const std::string& name, const Direction& way, PaStream& stream,
                              std::string& problem) {
    problem = way.none;
    WaveResult result = WaveResult::kNoDevice;
    const int preferred = way.preferred();
    if (name.empty() && preferred != paNoDevice)
        result = OpenDevice(preferred, way, stream, problem);
    if (name.empty() && preferred != paNoDevice && result != WaveResult::kBadFormat) return result;
    for (int i = 0; i < Pa_GetDeviceCount() && result != WaveResult::kOk; ++i) {
        const PaDeviceInfo& info = *Pa_GetDeviceInfo(i);
        if (info.*way.channels < 1 || (name.empty() && i == preferred)) continue;
        if (name.empty() || name == info.name) result = OpenDevice(i, way, stream, problem);
        if (name == info.name) break;
    }
    return result;
}

WaveResult PaLibrary::OpenDevice(int device, const Direction& way, PaStream& stream,
                                 std::string& problem) {
    const WaveFormat& format = stream.format;
    PaStreamParameters parameters{};
    parameters.device = device;
    parameters.channelCount = format.channels;
    parameters.sampleFormat = paInt16;
    parameters.suggestedLatency = Pa_GetDeviceInfo(device)->*way.latency;
    const PaError error = Pa_OpenStream(&stream.stream, way.output ? nullptr : &parameters,
                                        way.output ? &parameters : nullptr, format.samplesPerSecond,
                                        format.samplesPerSecond / kCallbacksPerSecond,
                                        paClipOff | paDitherOff, way.callback, &stream);
    if (error != paNoError) {
        stream.stream = nullptr;
        return Fail(error, problem);
    }
    ++openStreams_;
    Pa_SetStreamFinishedCallback(stream.stream, OnFinished);
    return WaveResult::kOk;
}

WaveResult PaLibrary::Start(PaStream& stream, std::string& problem) {
    // A stream whose server ended still counts as running until it is stopped.
    Abort(stream);
    stream.Rewind();
    stream.finished = false;
    stream.gate = true;
    const PaError error = Pa_StartStream(stream.stream);
    if (error == paNoError) return WaveResult::kOk;
    stream.gate = false;
    return Fail(error, problem);
}

void PaLibrary::Abort(PaStream& stream) {
    if (stream.stream != nullptr && Pa_IsStreamStopped(stream.stream) == 0)
        Pa_AbortStream(stream.stream);
}

WaveResult PaLibrary::Close(PaStream& stream, std::string& problem) {
    if (stream.stream == nullptr) return WaveResult::kOk;
    Abort(stream);
    const PaError error = Pa_CloseStream(stream.stream);
    stream.stream = nullptr;
    --openStreams_;
    return error == paNoError ? WaveResult::kOk : Fail(error, problem);
}

}  // namespace orma
