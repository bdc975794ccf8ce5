#pragma once

#include <memory>

#include "platform/simulated/simulated_recorder.h"
#include "platform/wave.h"

namespace orma {

/// The wave devices of a simulated recorder: the input of another sound system, at 48000 Hz and
/// under the recorder's name, made louder or softer by the recorder's gain; the outputs of that
/// system, and the recorder's own beside them, which plays through the default one, made louder or
/// softer by the recorder's volume. As any is opened where none is named, so is the recorder's own.
/// Samples are scaled in the buffers themselves. UI thread.
class SimulatedRecorderWaves : public WaveSystem {
  public:
    /// The recorder outlives this system.
    SimulatedRecorderWaves(std::unique_ptr<WaveSystem> system, const SimulatedRecorder& recorder)
        : system_(std::move(system)), recorder_(recorder) {}

    [[nodiscard]] std::vector<WaveDeviceInfo> Inputs() override;
    [[nodiscard]] std::vector<WaveDeviceInfo> Outputs() override;

    /// kBadFormat for other rates than 48000 Hz.
    [[nodiscard]] WaveResult OpenInput(const Text& name, const WaveFormat& format,
                                       WaveInEvents& events,
                                       std::unique_ptr<WaveInDevice>& device) override;
    [[nodiscard]] WaveResult OpenOutput(const Text& name, const WaveFormat& format,
                                        WaveOutEvents& events,
                                        std::unique_ptr<WaveOutDevice>& device) override;
    [[nodiscard]] WaveResult SetOutputVolume(std::uint16_t left, std::uint16_t right) override {
        return system_->SetOutputVolume(left, right);
    }

  private:
    std::unique_ptr<WaveSystem> system_;
    const SimulatedRecorder& recorder_;
};

}  // namespace orma
