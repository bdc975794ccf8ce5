#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "platform/portaudio/bounded_worker.h"
#include "platform/portaudio/pa_library.h"
#include "platform/portaudio/portaudio_limits.h"
#include "platform/portaudio/pumped.h"
#include "platform/wave.h"
#include "platform/wave_queue.h"

namespace orma {

/// A loudspeaker by way of PortAudio. What is written goes into a ring at once, the audio callback
/// takes it from there and scales it by the volume; on the UI thread Pump returns the buffers that
/// it has taken.
///
/// Reset returns without waiting for the library, which may need seconds to end a stream: a closed
/// gate keeps the callback silent until then. While paused, the stream runs on in silence. Where
/// the ring runs dry between two sounds there is a gap, which is counted and traced.
class PortAudioWaveOut : public WaveOutDevice, public Pumped {
  public:
    /// Seconds of sound that can be queued.
    static constexpr std::uint32_t kRingSeconds = 4;

    /// `playback` is open. All references outlive the device.
    PortAudioWaveOut(EventLoop& loop, BoundedWorker& worker, std::shared_ptr<PaLibrary> library,
                     std::shared_ptr<Playback> playback, const PortAudioLimits& limits,
                     WaveOutEvents& events, std::function<void(Pumped&)> onClose);
    ~PortAudioWaveOut() override;

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;

    /// kFailed when more is queued than the ring holds; kNoDevice once the device is lost.
    [[nodiscard]] WaveResult Write(WaveHeader& header) override;
    [[nodiscard]] WaveResult Pause() override;
    [[nodiscard]] WaveResult Restart() override;
    [[nodiscard]] WaveResult Reset() override;

    void Pump() override;

  private:
    [[nodiscard]] WaveResult Run();
    [[nodiscard]] bool IsFirstDone() const;
    void OnWatchdog();
    void Lose(WaveLoss reason);

    EventLoop& loop_;
    BoundedWorker& worker_;
    std::shared_ptr<PaLibrary> library_;
    std::shared_ptr<Playback> playback_;
    PortAudioLimits limits_;
    WaveOutEvents& events_;
    std::function<void(Pumped&)> onClose_;
    std::unique_ptr<Timer> watchdog_;
    std::chrono::steady_clock::time_point lastCallback_;
    std::uint32_t seenCallbacks_ = 0;
    bool called_ = false;   // since the stream was started
    bool started_ = false;  // the stream runs
    bool paused_ = false;
    bool lost_ = false;
    WaveQueue queue_;
    std::vector<std::size_t> ends_;  // of the queued buffers, in bytes ever written to the ring
};

}  // namespace orma
