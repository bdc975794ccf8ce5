#pragma once

#include <memory>

#include "platform/portaudio/portaudio_device.h"
#include "platform/wave.h"

namespace orma {

/// A microphone by way of PortAudio. The audio callback fills a ring, the backlog; on the UI thread
/// Pump moves it into the queued buffers.
class PortAudioWaveIn : public WaveInDevice, public PortAudioDevice {
  public:
    /// `capture` is open; `events` outlives the device.
    PortAudioWaveIn(PortAudioHost host, std::shared_ptr<Capture> capture, WaveInEvents& events);

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Add(WaveHeader& header) override;
    [[nodiscard]] WaveResult Start() override;
    [[nodiscard]] WaveResult Stop() override;
    [[nodiscard]] WaveResult Reset() override;
    [[nodiscard]] std::uint64_t LostFrames() const override;
    [[nodiscard]] WaveResult Close() override { return CloseStream(); }

  private:
    [[nodiscard]] bool IsFirstDone() const override;
    void ReturnFirst() override;
    void TellLoss(WaveLoss reason) override { events_.OnWaveInLost(reason); }
    void Fill(WaveHeader& header);

    std::shared_ptr<Capture> capture_;
    WaveInEvents& events_;
    bool flushed_ = false;  // since Start
};

}  // namespace orma
