#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/portaudio/capture_ring.h"
#include "platform/wave.h"

namespace orma {

/// What one capture shares between the UI thread, the worker and the audio callback.
struct Capture {
    Capture(const WaveFormat& itsFormat, std::size_t ringBytes, Wakeup& itsWakeup)
        : format(itsFormat), wakeup(itsWakeup), ring(ringBytes) {}

    const WaveFormat format;
    Wakeup& wakeup;  // signalled by the callback
    CaptureRing ring;
    std::atomic<bool> capturing = false;  // the gate: closed, the callback drops everything
    std::atomic<bool> finished = false;   // the stream ended while the gate was open
    std::atomic<std::uint32_t> callbacks = 0;
    std::atomic<std::uint64_t> lostFrames = 0;
    void* stream = nullptr;  // the library's handle, worker only
};

/// PortAudio, initialised when it is first needed. Every operation may block for ever when the
/// sound server hangs: worker thread only, the destructor excepted. `problem` receives the
/// library's text of a failure.
class PaLibrary {
  public:
    struct Devices {
        std::vector<WaveDeviceInfo> inputs;
        std::vector<WaveDeviceInfo> outputs;
    };

    /// The devices that are there now; while a stream is open those of the last initialisation.
    [[nodiscard]] Devices List(std::string& problem);

    /// Opens an input by its name in UTF-8, or the default one; when that refuses the format, the
    /// first other one that takes it.
    [[nodiscard]] WaveResult Open(const std::string& name, Capture& capture, std::string& problem);

    /// Opens the gate and starts the stream.
    [[nodiscard]] WaveResult Start(Capture& capture, std::string& problem);

    /// Ends capture; what the driver still holds is dropped.
    void Abort(Capture& capture);

    void Close(Capture& capture);

    /// Gives the library back; streams must be closed.
    void Terminate();

  private:
    bool Initialise(std::string& problem);
    [[nodiscard]] WaveResult OpenNow(const std::string& name, Capture& capture,
                                     std::string& problem);
    [[nodiscard]] WaveResult OpenDevice(int device, Capture& capture, std::string& problem);

    bool initialised_ = false;
    int openStreams_ = 0;
};

}  // namespace orma
