#include "platform/simulated/simulated_recorder_waves.h"

#include <algorithm>
#include <cmath>

namespace orma {
namespace {

/// Multiplies 16-bit samples, clipped.
void Scale(std::span<std::uint8_t> samples, double factor) {
    for (std::size_t at = 0; at + 2 <= samples.size() && factor != 1; at += 2) {
        const double sample = LoadLe<std::int16_t>(&samples[at]) * factor;
        StoreLe(&samples[at],
                static_cast<std::int16_t>(std::clamp(std::round(sample), -32768.0, 32767.0)));
    }
}

/// An input whose samples pass the recorder's gain on their way to the user.
class GainedInput : public WaveInDevice, private WaveInEvents {
  public:
    GainedInput(const SimulatedRecorder& recorder, WaveInEvents& events)
        : recorder_(recorder), events_(events) {}

    WaveResult Open(WaveSystem& system, const WaveFormat& format) {
        return system.OpenInput(u"", format, *this, device_);
    }

    WaveResult Prepare(WaveHeader& header) override { return device_->Prepare(header); }
    WaveResult Unprepare(WaveHeader& header) override { return device_->Unprepare(header); }
    WaveResult Add(WaveHeader& header) override { return device_->Add(header); }
    WaveResult Start() override { return device_->Start(); }
    WaveResult Stop() override { return device_->Stop(); }
    WaveResult Reset() override { return device_->Reset(); }
    std::uint64_t LostFrames() const override { return device_->LostFrames(); }
    WaveResult Close() override { return device_->Close(); }

  private:
    void OnWaveInData(WaveHeader& header) override {
        Scale({header.data, header.bytesRecorded}, recorder_.Gain());
        events_.OnWaveInData(header);
    }
    void OnWaveInLost(WaveLoss reason) override { events_.OnWaveInLost(reason); }

    const SimulatedRecorder& recorder_;
    WaveInEvents& events_;
    std::unique_ptr<WaveInDevice> device_;
};

/// An output whose samples pass the recorder's volume on their way to the listener.
class ScaledOutput : public WaveOutDevice {
  public:
    ScaledOutput(const SimulatedRecorder& recorder, std::unique_ptr<WaveOutDevice> device)
        : recorder_(recorder), device_(std::move(device)) {}

    WaveResult Prepare(WaveHeader& header) override { return device_->Prepare(header); }
    WaveResult Unprepare(WaveHeader& header) override { return device_->Unprepare(header); }
    WaveResult Write(WaveHeader& header) override {
        Scale({header.data, header.bufferLength}, recorder_.Volume());
        return device_->Write(header);
    }
    WaveResult Pause() override { return device_->Pause(); }
    WaveResult Restart() override { return device_->Restart(); }
    WaveResult Reset() override { return device_->Reset(); }
    WaveResult Close() override { return device_->Close(); }

  private:
    const SimulatedRecorder& recorder_;
    std::unique_ptr<WaveOutDevice> device_;
};

}  // namespace

std::vector<WaveDeviceInfo> SimulatedRecorderWaves::Inputs() {
    std::vector<WaveDeviceInfo> inputs = system_->Inputs();
    for (WaveDeviceInfo& input : inputs)
        input.name = SimulatedRecorder::kName;
    return inputs;
}

std::vector<WaveDeviceInfo> SimulatedRecorderWaves::Outputs() {
    std::vector<WaveDeviceInfo> outputs = system_->Outputs();
    outputs.push_back({Text(SimulatedRecorder::kName), 2, false});
    return outputs;
}

WaveResult SimulatedRecorderWaves::OpenInput(const Text& name, const WaveFormat& format,
                                             WaveInEvents& events,
                                             std::unique_ptr<WaveInDevice>& device) {
    if (!name.empty() && name != SimulatedRecorder::kName) return WaveResult::kNoDevice;
    if (format.samplesPerSecond != 48000) return WaveResult::kBadFormat;
    auto input = std::make_unique<GainedInput>(recorder_, events);
    const WaveResult result = input->Open(*system_, format);
    if (result == WaveResult::kOk) device = std::move(input);
    return result;
}

WaveResult SimulatedRecorderWaves::OpenOutput(const Text& name, const WaveFormat& format,
                                              WaveOutEvents& events,
                                              std::unique_ptr<WaveOutDevice>& device) {
    if (!name.empty() && name != SimulatedRecorder::kName)
        return system_->OpenOutput(name, format, events, device);
    std::unique_ptr<WaveOutDevice> own;
    const WaveResult result = system_->OpenOutput(u"", format, events, own);
    if (result == WaveResult::kOk)
        device = std::make_unique<ScaledOutput>(recorder_, std::move(own));
    return result;
}

}  // namespace orma
