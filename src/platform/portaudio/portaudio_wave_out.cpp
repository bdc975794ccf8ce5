#include "platform/portaudio/portaudio_wave_out.h"

#include <utility>

#include "base/trace.h"

namespace orma {

PortAudioWaveOut::PortAudioWaveOut(PortAudioHost host, std::shared_ptr<Playback> playback,
                                   WaveOutEvents& events)
    : PortAudioDevice(std::move(host), playback), playback_(std::move(playback)), events_(events) {}

PortAudioWaveOut::~PortAudioWaveOut() {
    if (const std::uint64_t gap = playback_->gapFrames; gap != 0)
        Trace("portaudio: %llu frames of silence between sounds",
              static_cast<unsigned long long>(gap));
}

WaveResult PortAudioWaveOut::Prepare(WaveHeader& header) {
    return queue_.Prepare(header);
}

WaveResult PortAudioWaveOut::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult PortAudioWaveOut::Write(WaveHeader& header) {
    if (IsLost()) return WaveResult::kNoDevice;
    SoundRing& ring = playback_->ring;
    if (ring.Capacity() - ring.Available() < header.bufferLength) return WaveResult::kFailed;
    if (!paused_)
        if (const WaveResult result = RunStream(); result != WaveResult::kOk) return result;
    const WaveResult result = queue_.Add(header);
    if (result != WaveResult::kOk) return result;
    (void)ring.Write({header.data, header.bufferLength}, playback_->format.blockAlign);
    ends_.push_back(ring.Written());
    return result;
}

WaveResult PortAudioWaveOut::Pause() {
    paused_ = true;
    playback_->gate = false;
    return WaveResult::kOk;
}

WaveResult PortAudioWaveOut::Restart() {
    paused_ = false;
    if (queue_.Waiting().empty()) return WaveResult::kOk;
    return RunStream();
}

WaveResult PortAudioWaveOut::Reset() {
    HaltStream();
    playback_->discardTo = playback_->ring.Written();
    paused_ = false;
    ends_.clear();
    queue_.ReturnAll([this](WaveHeader& header) { events_.OnWaveOutDone(header); });
    return WaveResult::kOk;
}

/// Taken by the callback; an empty one moreover by the ear, for which silence counts, too.
bool PortAudioWaveOut::IsFirstDone() const {
    if (ends_.empty()) return false;
    const std::uint64_t align = playback_->format.blockAlign;
    const std::uint64_t idle = playback_->idleFrames.load(std::memory_order_acquire);
    const std::uint64_t taken = playback_->ring.Consumed();
    if (queue_.Waiting().front()->bufferLength > 0) return taken >= ends_.front();
    return taken + idle * align >= ends_.front() + playback_->latencyFrames * align;
}

void PortAudioWaveOut::ReturnFirst() {
    ends_.erase(ends_.begin());
    events_.OnWaveOutDone(queue_.Take());
}

}  // namespace orma
