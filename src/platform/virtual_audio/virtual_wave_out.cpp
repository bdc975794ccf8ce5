#include "platform/virtual_audio/virtual_wave_out.h"

#include <algorithm>
#include <array>

#include "base/trace.h"

namespace orma {
namespace {

constexpr std::uint32_t kTickMs = 10;

}  // namespace

VirtualWaveOut::VirtualWaveOut(EventLoop& loop, std::unique_ptr<FileLoudspeaker> loudspeaker,
                               const WaveFormat& format, Pace pace, SteadyNow now,
                               std::shared_ptr<const OutputVolume> volume, WaveOutEvents& events)
    : loop_(loop),
      loudspeaker_(std::move(loudspeaker)),
      channels_(format.channels),
      blockAlign_(format.blockAlign),
      pace_(pace),
      volume_(std::move(volume)),
      events_(events),
      clock_(std::move(now), format.samplesPerSecond),
      queue_(loop, format.blockAlign) {}

WaveResult VirtualWaveOut::Prepare(WaveHeader& header) {
    return queue_.Prepare(header);
}

WaveResult VirtualWaveOut::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult VirtualWaveOut::Write(WaveHeader& header) {
    if (failed_) return WaveResult::kFailed;
    const WaveResult result = queue_.Add(header);
    if (result == WaveResult::kOk) Resume();
    return result;
}

WaveResult VirtualWaveOut::Pause() {
    paused_ = true;
    clock_.Stop();
    timer_.reset();
    return WaveResult::kOk;
}

WaveResult VirtualWaveOut::Restart() {
    paused_ = false;
    Resume();
    return WaveResult::kOk;
}

WaveResult VirtualWaveOut::Reset() {
    clock_.Stop();
    timer_.reset();
    if (pace_ == Pace::kReal)
        for (const WaveHeader* header : queue_.Waiting()) {
            if (!Play(*header, clock_.Frames())) break;
            playedBytes_ = 0;
        }
    playedBytes_ = 0;
    clock_.Set(playedFrames_);
    paused_ = false;
    queue_.ReturnAll([this](WaveHeader& header) { events_.OnWaveOutDone(header); });
    return WaveResult::kOk;
}

WaveResult VirtualWaveOut::Close() {
    clock_.Stop();
    timer_.reset();
    queue_.Clear();
    const std::unique_ptr<FileLoudspeaker> loudspeaker = std::move(loudspeaker_);
    return loudspeaker == nullptr || loudspeaker->Close() ? WaveResult::kOk : WaveResult::kFailed;
}

void VirtualWaveOut::Resume() {
    if (paused_ || queue_.Waiting().empty()) return;
    if (pace_ == Pace::kReal) {
        clock_.Start();
        if (!timer_) timer_ = loop_.StartTimer(kTickMs, [this] { Step(); });
        return;
    }
    if (stepPosted_) return;
    stepPosted_ = true;
    loop_.Post([this, life = queue_.Life()] {
        if (life.expired()) return;
        stepPosted_ = false;
        Step();
    });
}

/// One event: plays what is due (at the fast pace one buffer) and returns what is finished.
void VirtualWaveOut::Step() {
    const std::weak_ptr<const void> life = queue_.Life();
    for (std::size_t left = queue_.Waiting().size(); left > 0 && !paused_; --left) {
        if (queue_.Waiting().empty()) break;
        WaveHeader& header = *queue_.Waiting().front();
        const std::uint64_t rest = (header.bufferLength - playedBytes_) / blockAlign_;
        if (!Play(header, pace_ == Pace::kFast ? playedFrames_ + rest : clock_.Frames())) break;
        playedBytes_ = 0;
        queue_.Take();
        if (queue_.Waiting().empty() && clock_.Running()) clock_.Set(playedFrames_);
        events_.OnWaveOutDone(header);
        if (life.expired()) return;
        if (pace_ == Pace::kFast) break;
    }
    if (queue_.Waiting().empty()) timer_.reset();
    if (pace_ == Pace::kFast) Resume();
}

/// Continues the first buffer up to what is due; true when it is finished.
bool VirtualWaveOut::Play(const WaveHeader& header, std::uint64_t dueFrames) {
    const std::uint32_t room = header.bufferLength - playedBytes_;
    const auto frames = static_cast<std::uint32_t>(std::min<std::uint64_t>(
        room / blockAlign_, dueFrames - std::min(dueFrames, playedFrames_)));
    Emit({reinterpret_cast<const std::int16_t*>(header.data + playedBytes_),
          static_cast<std::size_t>(frames) * channels_});
    playedBytes_ += frames * blockAlign_;
    playedFrames_ += frames;
    return playedBytes_ == header.bufferLength;
}

void VirtualWaveOut::Emit(std::span<const std::int16_t> samples) {
    std::array<std::int16_t, 2048> scaled;  // NOLINT: filled before it is used
    while (!samples.empty() && loudspeaker_ && !failed_) {
        const std::size_t count = std::min(samples.size(), scaled.size());
        std::copy_n(samples.begin(), count, scaled.begin());
        volume_->Apply({scaled.data(), count}, channels_);
        failed_ = !loudspeaker_->Write({scaled.data(), count});
        if (failed_) Trace("virtual audio: the output file cannot be written any more");
        samples = samples.subspan(count);
    }
}

}  // namespace orma
