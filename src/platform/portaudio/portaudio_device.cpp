#include "platform/portaudio/portaudio_device.h"

#include <utility>

#include "base/trace.h"

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::uint32_t kWatchdogMs = 250;

}  // namespace

PortAudioDevice::PortAudioDevice(PortAudioHost host, std::shared_ptr<PaStream> stream)
    : queue_(host.loop, stream->format.blockAlign),
      host_(std::move(host)),
      stream_(std::move(stream)) {}

PortAudioDevice::~PortAudioDevice() {
    stream_->gate = false;
    if (!closed_)
        host_.worker.Post([library = host_.library, stream = stream_] {
            std::string ignored;
            (void)library->Close(*stream, ignored);
        });
    host_.onClose(*this);
}

/// Has the worker do `job`; kFailed when that takes too long, and `undo` then follows it.
WaveResult PortAudioDevice::Call(const char* what,
                                 std::function<WaveResult(std::string& problem)> job,
                                 std::function<void()> undo) {
    struct Outcome {
        WaveResult result = WaveResult::kFailed;
        std::string problem;
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered = host_.worker.Run(
        [job = std::move(job), outcome] { outcome->result = job(outcome->problem); },
        std::move(undo), host_.limits.call);
    const WaveResult result = answered ? outcome->result : WaveResult::kFailed;
    if (result != WaveResult::kOk)
        Trace("portaudio: %s: %s", what,
              answered ? outcome->problem.c_str() : "the sound system does not answer");
    return result;
}

WaveResult PortAudioDevice::RunStream() {
    if (lost_) return WaveResult::kNoDevice;
    if (started_) {
        if (!stream_->gate) lastCallback_ = SteadyClock::now();
        stream_->gate = true;
        return WaveResult::kOk;
    }
    const WaveResult result = Call(
        "start",
        [library = host_.library, stream = stream_](std::string& problem) {
            return library->Start(*stream, problem);
        },
        [library = host_.library, stream = stream_] {
            stream->gate = false;
            library->Abort(*stream);
        });
    if (result != WaveResult::kOk) return result;
    started_ = true;
    called_ = false;
    lastCallback_ = SteadyClock::now();
    watchdog_ = host_.loop.StartTimer(kWatchdogMs, [this] { OnWatchdog(); });
    return result;
}

void PortAudioDevice::HaltStream() {
    stream_->gate = false;
    watchdog_.reset();
    if (std::exchange(started_, false))
        host_.worker.Post([library = host_.library, stream = stream_] { library->Abort(*stream); });
}

WaveResult PortAudioDevice::CloseStream() {
    if (std::exchange(closed_, true)) return WaveResult::kOk;
    HaltStream();
    queue_.Clear();
    const auto close = [library = host_.library, stream = stream_](std::string& problem) {
        return library->Close(*stream, problem);
    };
    const WaveResult result = Call("close", close, {});
    // It may have been dropped in front of a call that hangs.
    if (result != WaveResult::kOk)
        host_.worker.Post([close] {
            std::string ignored;
            (void)close(ignored);
        });
    return result;
}

void PortAudioDevice::Pump() {
    if (!started_ || lost_) return;
    const bool finished = stream_->finished.load(std::memory_order_acquire);
    if (const std::uint32_t callbacks = stream_->callbacks; callbacks != seenCallbacks_) {
        seenCallbacks_ = callbacks;
        lastCallback_ = SteadyClock::now();
        called_ = true;
    }
    const std::weak_ptr<const void> life = queue_.Life();
    // Buffers that a handler hands in wait for the next turn, so that other events have theirs.
    for (std::size_t left = queue_.Waiting().size(); left > 0 && started_ && IsFirstDone();
         --left) {
        ReturnFirst();
        if (life.expired()) return;
    }
    if (!started_) return;
    if (IsFirstDone())
        stream_->wakeup.Signal();
    else if (finished)
        Lose(WaveLoss::kVanished);
}

// Behind a closed gate, while paused, nothing is awaited.
void PortAudioDevice::OnWatchdog() {
    const std::weak_ptr<const void> life = queue_.Life();
    Pump();
    if (life.expired() || !started_ || lost_ || !stream_->gate) return;
    const auto limit = called_ ? host_.limits.nextData : host_.limits.firstData;
    if (SteadyClock::now() - lastCallback_ > limit) Lose(WaveLoss::kStalled);
}

void PortAudioDevice::Lose(WaveLoss reason) {
    lost_ = true;
    stream_->gate = false;
    watchdog_.reset();  // this may be its tick
    TellLoss(reason);
}

}  // namespace orma
