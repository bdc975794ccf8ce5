#pragma once

#include <memory>
#include <vector>

#include "platform/portaudio/portaudio_device.h"
#include "platform/wave.h"

namespace orma {

/// A loudspeaker by way of PortAudio. What is written goes into a ring at once, the audio callback
/// takes it from there and scales it by the volume; on the UI thread Pump returns the buffers that
/// it has taken. While paused, the stream runs on in silence. Where the ring runs dry between two
/// sounds there is a gap, which is counted and traced.
class PortAudioWaveOut : public WaveOutDevice, public PortAudioDevice {
  public:
    /// Seconds of sound that can be queued.
    static constexpr std::uint32_t kRingSeconds = 4;

    /// `playback` is open; `events` outlives the device.
    PortAudioWaveOut(PortAudioHost host, std::shared_ptr<Playback> playback, WaveOutEvents& events);
    ~PortAudioWaveOut() override;

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;

    /// kFailed when more is queued than the ring holds; kNoDevice once the device is lost.
    [[nodiscard]] WaveResult Write(WaveHeader& header) override;
    [[nodiscard]] WaveResult Pause() override;
    [[nodiscard]] WaveResult Restart() override;
    [[nodiscard]] WaveResult Reset() override;
    [[nodiscard]] WaveResult Close() override { return CloseStream(); }

  private:
    [[nodiscard]] bool IsFirstDone() const override;
    void ReturnFirst() override;
    void TellLoss(WaveLoss reason) override { events_.OnWaveOutLost(reason); }

    std::shared_ptr<Playback> playback_;
    WaveOutEvents& events_;
    bool paused_ = false;
    std::vector<std::size_t> ends_;  // of the queued buffers, in bytes ever written to the ring
};

}  // namespace orma
