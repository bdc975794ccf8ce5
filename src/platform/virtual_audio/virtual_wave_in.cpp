#include "platform/virtual_audio/virtual_wave_in.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orma {
namespace {

/// How late a buffer may come in real time.
constexpr std::uint32_t kTickMs = 10;

}  // namespace

VirtualWaveIn::VirtualWaveIn(EventLoop& loop, std::unique_ptr<FileMicrophone> microphone,
                             const WaveFormat& format, const VirtualAudioOptions& options,
                             SteadyNow now, WaveInEvents& events)
    : loop_(loop),
      microphone_(std::move(microphone)),
      blockAlign_(format.blockAlign),
      pace_(options.pace),
      vanishAfterFrames_(options.vanishAfterFrames),
      delivered_(options.countFile),
      events_(events),
      clock_(std::move(now), format.samplesPerSecond * options.speed),
      queue_(loop, format.blockAlign) {}

WaveResult VirtualWaveIn::Prepare(WaveHeader& header) {
    return header.bufferLength == 0 ? WaveResult::kFailed : queue_.Prepare(header);
}

WaveResult VirtualWaveIn::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult VirtualWaveIn::Add(WaveHeader& header) {
    const WaveResult result = queue_.Add(header);
    if (result != WaveResult::kOk) return result;
    std::memset(header.data, 0, header.bufferLength);
    ScheduleStep();
    return result;
}

WaveResult VirtualWaveIn::Start() {
    if (lost_) return WaveResult::kNoDevice;
    if (started_) return WaveResult::kOk;
    started_ = true;
    if (std::exchange(flushed_, false)) clock_.Set(filledFrames_);
    if (pace_ == Pace::kReal) {
        clock_.Start();
        timer_ = loop_.StartTimer(kTickMs, [this] { Step(); });
    }
    ScheduleStep();
    return WaveResult::kOk;
}

WaveResult VirtualWaveIn::Stop() {
    started_ = false;
    timer_.reset();
    clock_.Stop();
    return WaveResult::kOk;
}

WaveResult VirtualWaveIn::Reset() {
    (void)Stop();
    // The fast pace has no time in which more could have been heard.
    if (pace_ == Pace::kReal)
        for (WaveHeader* header : queue_.Waiting())
            if (!Fill(*header, DueFrames())) break;
    flushed_ = true;
    queue_.ReturnAll([this](WaveHeader& header) { events_.OnWaveInData(header); });
    return WaveResult::kOk;
}

WaveResult VirtualWaveIn::Close() {
    (void)Stop();
    queue_.Clear();
    microphone_.reset();
    return WaveResult::kOk;
}

void VirtualWaveIn::ScheduleStep() {
    if (pace_ != Pace::kFast || !started_ || lost_ || stepPosted_ || queue_.Waiting().empty())
        return;
    stepPosted_ = true;
    loop_.Post([this, life = queue_.Life()] {
        if (life.expired()) return;
        stepPosted_ = false;
        Step();
    });
}

/// Frames that the microphone has heard by now; at the fast pace always one buffer more.
std::uint64_t VirtualWaveIn::DueFrames() const {
    std::uint64_t frames = clock_.Frames();
    if (pace_ == Pace::kFast)
        frames = queue_.Waiting().empty()
                     ? filledFrames_
                     : filledFrames_ + queue_.Waiting().front()->bufferLength / blockAlign_;
    return vanishAfterFrames_ ? std::min(frames, *vanishAfterFrames_) : frames;
}

/// Continues a buffer up to what is due; true when it is full.
bool VirtualWaveIn::Fill(WaveHeader& header, std::uint64_t dueFrames) {
    const std::uint32_t room = header.bufferLength - header.bytesRecorded;
    const auto bytes = static_cast<std::uint32_t>(std::min<std::uint64_t>(
                           room / blockAlign_, dueFrames - std::min(dueFrames, filledFrames_))) *
                       blockAlign_;
    auto* samples = reinterpret_cast<std::int16_t*>(header.data + header.bytesRecorded);
    microphone_->Read({samples, bytes / sizeof(std::int16_t)});
    header.bytesRecorded += bytes;
    filledFrames_ += bytes / blockAlign_;
    return header.bytesRecorded == header.bufferLength;
}

/// One event: returns what is due, but no more buffers than were queued when it began, so that
/// other events have their turn while a backlog is worked off.
void VirtualWaveIn::Step() {
    if (!started_ || lost_) return;
    const std::weak_ptr<const void> life = queue_.Life();
    const std::uint64_t dueFrames = DueFrames();
    for (std::size_t left = queue_.Waiting().size(); left > 0 && started_; --left) {
        if (queue_.Waiting().empty() || !Fill(*queue_.Waiting().front(), dueFrames)) break;
        delivered_.Set(filledFrames_);
        events_.OnWaveInData(queue_.Take());
        if (life.expired()) return;
    }
    if (started_ && vanishAfterFrames_ && filledFrames_ >= *vanishAfterFrames_) {
        lost_ = true;
        timer_.reset();  // this may be its tick
        events_.OnWaveInLost(WaveLoss::kVanished);
        return;
    }
    ScheduleStep();
}

}  // namespace orma
