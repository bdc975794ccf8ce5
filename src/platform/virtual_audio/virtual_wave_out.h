#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/event_loop.h"
#include "platform/output_volume.h"
#include "platform/virtual_audio/file_loudspeaker.h"
#include "platform/virtual_audio/frame_clock.h"
#include "platform/virtual_audio/virtual_audio_options.h"
#include "platform/wave.h"
#include "platform/wave_queue.h"

namespace orma {

/// A loudspeaker whose sound goes into a file. What a reset cuts off was not played and is not
/// written; pauses and times without a buffer leave no gap in the file.
class VirtualWaveOut : public WaveOutDevice {
  public:
    /// `loudspeaker` may be null: the sound is then lost, in the same time.
    VirtualWaveOut(EventLoop& loop, std::unique_ptr<FileLoudspeaker> loudspeaker,
                   const WaveFormat& format, Pace pace, SteadyNow now,
                   std::shared_ptr<const OutputVolume> volume, WaveOutEvents& events);

    [[nodiscard]] WaveResult Prepare(WaveHeader& header) override;
    [[nodiscard]] WaveResult Unprepare(WaveHeader& header) override;

    /// kFailed from the moment on at which the file could not be written.
    [[nodiscard]] WaveResult Write(WaveHeader& header) override;
    [[nodiscard]] WaveResult Pause() override;
    [[nodiscard]] WaveResult Restart() override;
    [[nodiscard]] WaveResult Reset() override;

    /// kFailed when the file could not be completed.
    [[nodiscard]] WaveResult Close() override;

  private:
    void Resume();
    void Step();
    [[nodiscard]] bool Play(const WaveHeader& header, std::uint64_t dueFrames);
    void Emit(std::span<const std::int16_t> samples);

    EventLoop& loop_;
    std::unique_ptr<FileLoudspeaker> loudspeaker_;
    std::uint16_t channels_;
    std::uint32_t blockAlign_;
    Pace pace_;
    std::shared_ptr<const OutputVolume> volume_;
    WaveOutEvents& events_;
    FrameClock clock_;
    std::unique_ptr<Timer> timer_;  // real time only
    std::uint64_t playedFrames_ = 0;
    std::uint32_t playedBytes_ = 0;  // of the first buffer
    bool paused_ = false;
    bool stepPosted_ = false;
    bool failed_ = false;
    WaveQueue queue_;
};

}  // namespace orma
