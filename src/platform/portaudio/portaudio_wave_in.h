#pragma once

#include <chrono>
#include <memory>

#include "platform/event_loop.h"
#include "platform/portaudio/bounded_worker.h"
#include "platform/portaudio/pa_library.h"
#include "platform/portaudio/portaudio_limits.h"
#include "platform/portaudio/pumped.h"
#include "platform/wave.h"
#include "platform/wave_queue.h"

namespace orma {

/// A microphone by way of PortAudio. The audio callback fills a ring; on the UI thread Pump moves
/// it into the queued buffers.
///
/// Stop and Reset return without waiting for the library, which may need seconds to end a stream:
/// a closed gate keeps out what it still delivers. Reset hands out what the ring holds as far as
/// buffers are queued; what goes beyond them (only after the UI thread stood still for longer than
/// the queued buffers last) is counted into LostFrames and traced.
class PortAudioWaveIn : public WaveInDevice, public Pumped {
  public:
    /// `capture` is open. All references outlive the device.
    PortAudioWaveIn(EventLoop& loop, BoundedWorker& worker, std::shared_ptr<PaLibrary> library,
                    std::shared_ptr<Capture> capture, const PortAudioLimits& limits,
                    WaveInEvents& events, std::function<void(Pumped&)> onClose);
    ~PortAudioWaveIn() override;

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Add(WaveHeader& header) override;
    [[nodiscard]] WaveResult Start() override;
    [[nodiscard]] WaveResult Stop() override;
    [[nodiscard]] WaveResult Reset() override;
    [[nodiscard]] std::uint64_t LostFrames() const override;

    /// Returns the buffers that the ring can fill.
    void Pump() override;

  private:
    void OnWatchdog();
    void Lose(WaveLoss reason);
    [[nodiscard]] bool CanFillNext() const;

    EventLoop& loop_;
    BoundedWorker& worker_;
    std::shared_ptr<PaLibrary> library_;
    std::shared_ptr<Capture> capture_;
    PortAudioLimits limits_;
    WaveInEvents& events_;
    std::function<void(Pumped&)> onClose_;
    std::unique_ptr<Timer> watchdog_;
    std::chrono::steady_clock::time_point lastData_;
    std::uint32_t seenCallbacks_ = 0;
    bool heard_ = false;  // since Start
    bool started_ = false;
    bool lost_ = false;
    bool flushed_ = false;  // since Start
    WaveQueue queue_;
};

}  // namespace orma
