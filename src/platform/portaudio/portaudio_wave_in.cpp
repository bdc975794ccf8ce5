#include "platform/portaudio/portaudio_wave_in.h"

#include <algorithm>
#include <utility>

namespace orma {

PortAudioWaveIn::PortAudioWaveIn(PortAudioHost host, std::shared_ptr<Capture> capture,
                                 WaveInEvents& events)
    : PortAudioDevice(std::move(host), capture), capture_(std::move(capture)), events_(events) {}

WaveResult PortAudioWaveIn::Prepare(WaveHeader& header) {
    return header.bufferLength == 0 ? WaveResult::kFailed : queue_.Prepare(header);
}

WaveResult PortAudioWaveIn::Unprepare(WaveHeader& header) {
    return queue_.Unprepare(header);
}

WaveResult PortAudioWaveIn::Add(WaveHeader& header) {
    const WaveResult result = queue_.Add(header);
    if (result == WaveResult::kOk && IsRunning() && IsFirstDone()) capture_->wakeup.Signal();
    return result;
}

WaveResult PortAudioWaveIn::Start() {
    if (!IsLost() && !IsRunning()) {
        capture_->lostFrames = 0;
        // A callback that was under way during the reset may have left something behind.
        if (std::exchange(flushed_, false)) (void)capture_->ring.Discard();
    }
    return RunStream();
}

WaveResult PortAudioWaveIn::Stop() {
    HaltStream();
    return WaveResult::kOk;
}

WaveResult PortAudioWaveIn::Reset() {
    HaltStream();
    for (WaveHeader* header : queue_.Waiting()) {
        Fill(*header);
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

bool PortAudioWaveIn::IsFirstDone() const {
    return !queue_.Waiting().empty() &&
           capture_->ring.Available() >= queue_.Waiting().front()->bufferLength;
}

void PortAudioWaveIn::ReturnFirst() {
    WaveHeader& header = queue_.Take();
    Fill(header);
    events_.OnWaveInData(header);
}

void PortAudioWaveIn::Fill(WaveHeader& header) {
    header.bytesRecorded =
        static_cast<std::uint32_t>(capture_->ring.Read({header.data, header.bufferLength}));
}

}  // namespace orma
