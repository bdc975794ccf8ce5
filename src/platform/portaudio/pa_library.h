#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/output_volume.h"
#include "platform/sound_ring.h"
#include "platform/wave.h"

namespace orma {

/// What one stream shares between the UI thread, the worker and the audio callback.
struct PaStream {
    PaStream(const WaveFormat& itsFormat, std::size_t ringBytes, Wakeup& itsWakeup)
        : format(itsFormat), wakeup(itsWakeup), ring(ringBytes) {}
    virtual ~PaStream() = default;
    PaStream(const PaStream&) = delete;
    PaStream& operator=(const PaStream&) = delete;

    /// Forgets what the callback noted; no callback runs. Worker.
    virtual void Rewind() {}

    const WaveFormat format;
    Wakeup& wakeup;  // signalled by the callback
    SoundRing ring;
    std::atomic<bool> gate = false;      // closed, the callback drops all input and gives silence
    std::atomic<bool> finished = false;  // the stream ended while the gate was open
    std::atomic<std::uint32_t> callbacks = 0;
    void* stream = nullptr;  // the library's handle, worker only
};

/// A stream from a microphone into the ring.
struct Capture : PaStream {
    using PaStream::PaStream;

    std::atomic<std::uint64_t> lostFrames = 0;
};

/// A stream from the ring to a loudspeaker.
struct Playback : PaStream {
    Playback(const WaveFormat& itsFormat, std::size_t ringBytes, Wakeup& itsWakeup,
             std::shared_ptr<const OutputVolume> itsVolume)
        : PaStream(itsFormat, ringBytes, itsWakeup), volume(std::move(itsVolume)) {}

    void Rewind() override {
        sounded = false;
        idleFrames = 0;
    }

    const std::shared_ptr<const OutputVolume> volume;
    std::atomic<std::size_t> discardTo = 0;     // ring bytes that a reset has cut off
    std::atomic<std::uint64_t> idleFrames = 0;  // of silence since the ring ran dry
    std::atomic<std::uint64_t> gapFrames = 0;   // of such silence between sounds
    std::uint32_t latencyFrames = 0;            // from the callback to the ear; set by Open
    bool sounded = false;                       // since Start; the callback's own
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

    /// Opens a device by its name in UTF-8, or the default one; when that refuses the format, the
    /// first other one that takes it.
    [[nodiscard]] WaveResult Open(const std::string& name, Capture& capture, std::string& problem);
    [[nodiscard]] WaveResult Open(const std::string& name, Playback& playback,
                                  std::string& problem);

    /// Opens the gate and starts the stream.
    [[nodiscard]] WaveResult Start(PaStream& stream, std::string& problem);

    /// Ends the stream; what the driver still holds is dropped.
    void Abort(PaStream& stream);

    /// Also of a stream that is closed already.
    [[nodiscard]] WaveResult Close(PaStream& stream, std::string& problem);

    /// Gives the library back; streams must be closed.
    void Terminate();

  private:
    bool Initialise(std::string& problem);
    struct Direction;
    [[nodiscard]] WaveResult Open(const std::string& name, const Direction& way, PaStream& stream,
                                  std::string& problem);
    [[nodiscard]] WaveResult OpenNow(const std::string& name, const Direction& way,
                                     PaStream& stream, std::string& problem);
    [[nodiscard]] WaveResult OpenDevice(int device, const Direction& way, PaStream& stream,
                                        std::string& problem);

    bool initialised_ = false;
    int openStreams_ = 0;
};

}  // namespace orma
