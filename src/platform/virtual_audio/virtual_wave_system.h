#pragma once

#include <memory>

#include "platform/event_loop.h"
#include "platform/virtual_audio/frame_clock.h"
#include "platform/virtual_audio/virtual_audio_options.h"
#include "platform/virtual_audio/virtual_wave_out.h"
#include "platform/wave.h"

namespace orma {

/// Sound without a sound card: a file is heard as the microphone, another receives what is played.
/// Every opening starts the input file at its beginning and the output file anew, so the same run
/// gives the same bytes. Takes 16-bit sound in one or two channels. UI thread.
class VirtualWaveSystem : public WaveSystem {
  public:
    /// `now` replaces the monotonic clock of the real-time pace in tests.
    VirtualWaveSystem(EventLoop& loop, VirtualAudioOptions options,
                      SteadyNow now = std::chrono::steady_clock::now);

    /// One device each, named like its file; none when the file cannot be read.
    [[nodiscard]] std::vector<WaveDeviceInfo> Inputs() override;
    [[nodiscard]] std::vector<WaveDeviceInfo> Outputs() override;

    /// kNoDevice (and a trace line) when the file cannot be read.
    [[nodiscard]] WaveResult OpenInput(const Text& name, const WaveFormat& format,
                                       WaveInEvents& events,
                                       std::unique_ptr<WaveInDevice>& device) override;

    /// kNoDevice (and a trace line) when the file cannot be created.
    [[nodiscard]] WaveResult OpenOutput(const Text& name, const WaveFormat& format,
                                        WaveOutEvents& events,
                                        std::unique_ptr<WaveOutDevice>& device) override;

    /// Scales what is written from now on; 65535 passes samples unchanged.
    [[nodiscard]] WaveResult SetOutputVolume(std::uint16_t left, std::uint16_t right) override;

  private:
    EventLoop& loop_;
    VirtualAudioOptions options_;
    SteadyNow now_;
    std::shared_ptr<OutputVolume> volume_ = std::make_shared<OutputVolume>();
};

}  // namespace orma
