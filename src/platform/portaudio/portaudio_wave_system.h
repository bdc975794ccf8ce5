#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/event_loop.h"
#include "platform/portaudio/bounded_worker.h"
#include "platform/portaudio/portaudio_device.h"
#include "platform/wave.h"

namespace orma {

/// The sound cards and servers that PortAudio reaches. The library is initialised by the first call
/// that needs it (50 to 150 ms), on a thread of its own: a hung sound server costs the caller the
/// time limit and the answer kFailed, never the program. Takes 16-bit sound in one or two channels.
/// UI thread; open devices must be destroyed before the system.
class PortAudioWaveSystem : public WaveSystem {
  public:
    explicit PortAudioWaveSystem(EventLoop& loop, PortAudioLimits limits = {});

    /// Waits up to the call limit for the library to close; a hung one is left to itself.
    ~PortAudioWaveSystem() override;
    PortAudioWaveSystem(const PortAudioWaveSystem&) = delete;
    PortAudioWaveSystem& operator=(const PortAudioWaveSystem&) = delete;

    /// What is plugged in now, or, while a device is open, what was before it was opened. Empty
    /// when the sound system does not answer.
    [[nodiscard]] std::vector<WaveDeviceInfo> Inputs() override;
    [[nodiscard]] std::vector<WaveDeviceInfo> Outputs() override;

    [[nodiscard]] WaveResult OpenInput(const Text& name, const WaveFormat& format,
                                       WaveInEvents& events,
                                       std::unique_ptr<WaveInDevice>& device) override;

    [[nodiscard]] WaveResult OpenOutput(const Text& name, const WaveFormat& format,
                                        WaveOutEvents& events,
                                        std::unique_ptr<WaveOutDevice>& device) override;

    /// Scales the samples on their way to the driver: heard behind what that already holds.
    [[nodiscard]] WaveResult SetOutputVolume(std::uint16_t left, std::uint16_t right) override;

  private:
    [[nodiscard]] std::optional<PaLibrary::Devices> List();
    template <class Stream>
    [[nodiscard]] WaveResult OpenStream(const char* kind, const Text& name,
                                        const std::shared_ptr<Stream>& stream);
    [[nodiscard]] PortAudioHost Host();
    void PumpAll();

    EventLoop& loop_;
    PortAudioLimits limits_;
    std::shared_ptr<PaLibrary> library_ = std::make_shared<PaLibrary>();
    BoundedWorker worker_;
    std::shared_ptr<const int> life_ = std::make_shared<const int>(0);
    std::unique_ptr<Wakeup> wakeup_;
    std::shared_ptr<OutputVolume> volume_ = std::make_shared<OutputVolume>();
    std::vector<PortAudioDevice*> open_;
};

}  // namespace orma
