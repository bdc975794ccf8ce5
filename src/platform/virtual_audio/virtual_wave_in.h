#pragma once

#include <memory>
#include <optional>

#include "platform/event_loop.h"
#include "platform/virtual_audio/delivery_count.h"
#include "platform/virtual_audio/file_microphone.h"
#include "platform/virtual_audio/frame_clock.h"
#include "platform/virtual_audio/virtual_audio_options.h"
#include "platform/wave.h"
#include "platform/wave_queue.h"

namespace orma {

/// A microphone that hears a sound file. No frame is ever lost: the file waits where buffers are
/// missing, so the backlog has no end.
///
/// In real time each buffer comes back when its last frame is due, and a stop leaves the buffer in
/// progress partly filled. At the fast pace one buffer comes back per event as long as buffers are
/// queued, and a stop finds the others empty.
class VirtualWaveIn : public WaveInDevice {
  public:
    VirtualWaveIn(EventLoop& loop, std::unique_ptr<FileMicrophone> microphone,
                  const WaveFormat& format, const VirtualAudioOptions& options, SteadyNow now,
                  WaveInEvents& events);

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Add(WaveHeader& header) override;
    [[nodiscard]] WaveResult Start() override;
    [[nodiscard]] WaveResult Stop() override;
    [[nodiscard]] WaveResult Reset() override;
    [[nodiscard]] std::uint64_t LostFrames() const override { return 0; }
    [[nodiscard]] WaveResult Close() override;

  private:
    void ScheduleStep();
    void Step();
    [[nodiscard]] std::uint64_t DueFrames() const;
    bool Fill(WaveHeader& header, std::uint64_t dueFrames);

    EventLoop& loop_;
    std::unique_ptr<FileMicrophone> microphone_;
    std::uint32_t blockAlign_;
    Pace pace_;
    std::optional<std::uint64_t> vanishAfterFrames_;
    DeliveryCount delivered_;
    WaveInEvents& events_;
    FrameClock clock_;
    std::unique_ptr<Timer> timer_;  // real time only
    std::uint64_t filledFrames_ = 0;
    bool started_ = false;
    bool stepPosted_ = false;
    bool flushed_ = false;  // what a reset left in the backlog ends with the next start
    bool lost_ = false;
    WaveQueue queue_;
};

}  // namespace orma
