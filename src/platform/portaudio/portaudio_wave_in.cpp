#include "platform/portaudio/portaudio_wave_in.h"

#include <algorithm>
#include <utility>

#include "base/trace.h"

namespace orma {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::uint32_t kWatchdogMs = 250;

}  // namespace

PortAudioWaveIn::PortAudioWaveIn(EventLoop& loop, BoundedWorker& worker,
                                 std::shared_ptr<PaLibrary> library,
                                 std::shared_ptr<Capture> capture, const PortAudioLimits& limits,
                                 WaveInEvents& events, std::function<void(Pumped&)> onClose)
    : loop_(loop),
      worker_(worker),
      library_(std::move(library)),
      capture_(std::move(capture)),
      limits_(limits),
      events_(events),
      onClose_(std::move(onClose)),
      queue_(loop, capture_->format.blockAlign) {}

PortAudioWaveIn::~PortAudioWaveIn() {
    capture_->gate = false;
    worker_.Post([library = library_, capture = capture_] { library->Close(*capture); });
    onClose_(*this);
}

WaveResult PortAudioWaveIn::Prepare(WaveHeader& header) {
    return header.bufferLength == 0 ? WaveResult::kFailed : queue_.Prepare(header);
}

WaveResult PortAudioWaveIn::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult PortAudioWaveIn::Add(WaveHeader& header) {
    const WaveResult result = queue_.Add(header);
    if (result == WaveResult::kOk && started_ && CanFillNext()) capture_->wakeup.Signal();
    return result;
}

WaveResult PortAudioWaveIn::Start() {
    if (lost_) return WaveResult::kNoDevice;
    if (started_) return WaveResult::kOk;
    capture_->lostFrames = 0;
    // A callback that was under way during the reset may have left something behind.
    if (std::exchange(flushed_, false)) (void)capture_->ring.Discard();
    struct Outcome {
        WaveResult result = WaveResult::kFailed;
        std::string problem = "the sound system does not answer";
    };
    const auto outcome = std::make_shared<Outcome>();
    const bool answered =
        worker_.Run([library = library_, capture = capture_,
                     outcome] { outcome->result = library->Start(*capture, outcome->problem); },
                    [library = library_, capture = capture_] {
                        capture->gate = false;
                        library->Abort(*capture);
                    },
                    limits_.call);
    if (!answered || outcome->result != WaveResult::kOk) {
        Trace("portaudio: start: %s",
              answered ? outcome->problem.c_str() : Outcome().problem.c_str());
        return answered ? outcome->result : WaveResult::kFailed;
    }
    started_ = true;
    heard_ = false;
    lastData_ = SteadyClock::now();
    watchdog_ = loop_.StartTimer(kWatchdogMs, [this] { OnWatchdog(); });
    return WaveResult::kOk;
}

WaveResult PortAudioWaveIn::Stop() {
    capture_->gate = false;
    watchdog_.reset();
    if (started_)
        worker_.Post([library = library_, capture = capture_] { library->Abort(*capture); });
    started_ = false;
    return WaveResult::kOk;
}

WaveResult PortAudioWaveIn::Reset() {
    (void)Stop();
    for (WaveHeader* header : queue_.Waiting()) {
        header->bytesRecorded =
            static_cast<std::uint32_t>(capture_->ring.Read({header->data, header->bufferLength}));
        std::fill(header->data + header->bytesRecorded, header->data + header->bufferLength,
                  std::uint8_t{0});
    }
    flushed_ = true;
    queue_.ReturnAll([this](WaveHeader& header) { events_.OnWaveInData(header); });
    return WaveResult::kOk;
}

std::uint64_t PortAudioWaveIn::LostFrames() const {
    return capture_->lostFrames;
}

bool PortAudioWaveIn::CanFillNext() const {
    return !queue_.Waiting().empty() &&
           capture_->ring.Available() >= queue_.Waiting().front()->bufferLength;
}

void PortAudioWaveIn::Pump() {
    if (!started_ || lost_) return;
    const bool finished = capture_->finished.load(std::memory_order_acquire);
    if (const std::uint32_t callbacks = capture_->callbacks; callbacks != seenCallbacks_) {
        seenCallbacks_ = callbacks;
        lastData_ = SteadyClock::now();
        heard_ = true;
    }
    const std::weak_ptr<const void> life = queue_.Life();
    // Buffers that a handler adds wait for the next turn, so that other events have theirs.
    for (std::size_t left = queue_.Waiting().size(); left > 0 && started_ && CanFillNext();
         --left) {
        WaveHeader& header = queue_.Take();
        header.bytesRecorded =
            static_cast<std::uint32_t>(capture_->ring.Read({header.data, header.bufferLength}));
        events_.OnWaveInData(header);
        if (life.expired()) return;
    }
    if (!started_) return;
    if (CanFillNext())
        capture_->wakeup.Signal();
    else if (finished)
        Lose(WaveLoss::kVanished);
}

void PortAudioWaveIn::OnWatchdog() {
    const std::weak_ptr<const void> life = queue_.Life();
    Pump();
    if (life.expired() || !started_ || lost_) return;
    if (SteadyClock::now() - lastData_ > (heard_ ? limits_.nextData : limits_.firstData))
        Lose(WaveLoss::kStalled);
}

void PortAudioWaveIn::Lose(WaveLoss reason) {
    lost_ = true;
    capture_->gate = false;
    watchdog_.reset();  // this may be its tick
    events_.OnWaveInLost(reason);
}

}  // namespace orma
