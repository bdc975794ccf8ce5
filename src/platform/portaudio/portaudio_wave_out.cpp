#include "platform/portaudio/portaudio_wave_out.h"

#include <utility>

#include "base/trace.h"

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::uint32_t kWatchdogMs = 250;

}  // namespace

PortAudioWaveOut::PortAudioWaveOut(EventLoop& loop, BoundedWorker& worker,
                                   std::shared_ptr<PaLibrary> library,
                                   std::shared_ptr<Playback> playback,
                                   const PortAudioLimits& limits, WaveOutEvents& events,
                                   std::function<void(Pumped&)> onClose)
    : loop_(loop),
      worker_(worker),
      library_(std::move(library)),
      playback_(std::move(playback)),
      limits_(limits),
      events_(events),
      onClose_(std::move(onClose)),
      queue_(loop, playback_->format.blockAlign) {}

PortAudioWaveOut::~PortAudioWaveOut() {
    playback_->gate = false;
    if (const std::uint64_t gap = playback_->gapFrames; gap != 0)
        Trace("portaudio: %llu frames of silence between sounds",
              static_cast<unsigned long long>(gap));
    worker_.Post([library = library_, playback = playback_] { library->Close(*playback); });
    onClose_(*this);
}

WaveResult PortAudioWaveOut::Prepare(WaveHeader& header) {
    return queue_.Prepare(header);
}

WaveResult PortAudioWaveOut::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult PortAudioWaveOut::Write(WaveHeader& header) {
    if (lost_) return WaveResult::kNoDevice;
    SoundRing& ring = playback_->ring;
    if (ring.Capacity() - ring.Available() < header.bufferLength) return WaveResult::kFailed;
    if (!paused_)
        if (const WaveResult result = Run(); result != WaveResult::kOk) return result;
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
    return Run();
}

/// Lets the stream run with the gate open.
WaveResult PortAudioWaveOut::Run() {
    if (lost_) return WaveResult::kNoDevice;
    if (started_) {
        if (!playback_->gate) lastCallback_ = SteadyClock::now();
        playback_->gate = true;
        return WaveResult::kOk;
    }
    struct Outcome {
        WaveResult result = WaveResult::kFailed;
        std::string problem = "the sound system does not answer";
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered = worker_.Run(
        [library = library_, playback = playback_, outcome] {
            library->Abort(*playback);
            playback->sounded = false;
            playback->idleFrames = 0;
            outcome->result = library->Start(*playback, outcome->problem);
        },
        [library = library_, playback = playback_] {
            playback->gate = false;
            library->Abort(*playback);
        },
        limits_.call);
    if (!answered || outcome->result != WaveResult::kOk) {
        Trace("portaudio: start: %s",
              answered ? outcome->problem.c_str() : Outcome().problem.c_str());
        return answered ? outcome->result : WaveResult::kFailed;
    }
    started_ = true;
    called_ = false;
    lastCallback_ = SteadyClock::now();
    watchdog_ = loop_.StartTimer(kWatchdogMs, [this] { OnWatchdog(); });
    return WaveResult::kOk;
}

WaveResult PortAudioWaveOut::Reset() {
    playback_->gate = false;
    playback_->discardTo = playback_->ring.Written();
    paused_ = false;
    watchdog_.reset();
    if (started_)
        worker_.Post([library = library_, playback = playback_] { library->Abort(*playback); });
    started_ = false;
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

void PortAudioWaveOut::Pump() {
    if (!started_ || lost_) return;
    const bool finished = playback_->finished.load(std::memory_order_acquire);
    if (const std::uint32_t callbacks = playback_->callbacks; callbacks != seenCallbacks_) {
        seenCallbacks_ = callbacks;
        lastCallback_ = SteadyClock::now();
        called_ = true;
    }
    const std::weak_ptr<const void> life = queue_.Life();
    // Buffers that a handler writes wait for the next turn, so that other events have theirs.
    for (std::size_t left = ends_.size(); left > 0 && started_ && IsFirstDone(); --left) {
        ends_.erase(ends_.begin());
        events_.OnWaveOutDone(queue_.Take());
        if (life.expired()) return;
    }
    if (!started_) return;
    if (IsFirstDone())
        playback_->wakeup.Signal();
    else if (finished)
        Lose(WaveLoss::kVanished);
}

void PortAudioWaveOut::OnWatchdog() {
    const std::weak_ptr<const void> life = queue_.Life();
    Pump();
    if (life.expired() || !started_ || lost_ || paused_) return;
    if (SteadyClock::now() - lastCallback_ > (called_ ? limits_.nextData : limits_.firstData))
        Lose(WaveLoss::kStalled);
}

void PortAudioWaveOut::Lose(WaveLoss reason) {
    lost_ = true;
    playback_->gate = false;
    watchdog_.reset();  // this may be its tick
    events_.OnWaveOutLost(reason);
}

}  // namespace orma
