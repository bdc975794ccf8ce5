#pragma once

#include "platform/external_recorder.h"
#include "platform/simulated/simulated_options.h"

namespace orma {

/// An external recorder that is wave output 1, beside the one of the virtual sound system. It keeps
/// what it is sent; its sound comes through SimulatedRecorderWaves.
class SimulatedRecorder : public ExternalRecorder {
  public:
    static constexpr TextView kName = u"MAYCOM simulated recorder";
    static constexpr std::uint32_t kOutput = 1;

    explicit SimulatedRecorder(const SimulatedRecorderOptions& options)
        : version_(options.version) {}

    [[nodiscard]] std::vector<Text> OutputNames() override;
    [[nodiscard]] WaveResult Query(std::uint32_t output, const WaveFormat& format,
                                   std::uint32_t message, RecorderMessage subCode,
                                   std::span<std::uint8_t> parameter) override;
    [[nodiscard]] WaveResult Send(RecorderLine line, std::uint32_t message, RecorderMessage subCode,
                                  std::span<std::uint8_t> parameter) override;

    /// What it was told last; at power-on 0 dB both.
    [[nodiscard]] std::uint32_t GainCode() const { return gainCode_; }
    [[nodiscard]] std::uint32_t VolumeCode() const { return volumeCode_; }
    [[nodiscard]] const RecorderConfiguration& Configuration() const { return configuration_; }

    /// The amplitudes that gain and volume mean, 1 = unchanged.
    [[nodiscard]] double Gain() const;
    [[nodiscard]] double Volume() const;

  private:
    std::uint16_t version_;
    std::uint32_t gainCode_ = 192;
    std::uint32_t volumeCode_ = 121;
    RecorderConfiguration configuration_;
};

}  // namespace orma
