// The way of one buffer: position -> reader -> device, and back; behind the last one the end
// marker.

#include <algorithm>

#include "audio/engine/busy.h"
#include "audio/engine/player.h"

namespace orma {

void Player::WomDoneMsg(WaveHeader& header) {
    if (device_ == nullptr) return;
    if (header.user >= kBuffers) {
        if (!markerOut_) return;
        markerOut_ = false;
        (void)device_->Unprepare(endMarker_);
        PlayedOut();
        return;
    }
    if (!s_.buffers[header.user].queued || returnedCount_ == returned_.size()) return;
    returned_[returnedCount_++] = header.user;
    while (returnedCount_ > 0 && !readerBusy_) {
        CaptureBuffer& buffer = s_.buffers[returned_.front()];
        std::rotate(returned_.begin(), returned_.begin() + 1, returned_.end());
        --returnedCount_;
        TakeBack(buffer);
    }
}

void Player::TakeBack(CaptureBuffer& buffer) {
    buffer.queued = false;
    --queuedCount_;
    const std::uint32_t run = run_;
    if (device_->Unprepare(buffer.header) != WaveResult::kOk)
        s_.readers.files.report.ShowError(u"waveOutUnprepareHeader");
    if (device_ == nullptr || run != run_) return;
    if (starting_) {
        if (queuedCount_ == 0) (void)Begin();
        return;
    }
    if (playing_) {
        FillAndWrite(buffer);
        if (playing_ && run == run_ && queuedCount_ == 0) EndPlaying();  // nothing would come back
    }
    Drain();
}

void Player::FillAndWrite(CaptureBuffer& buffer) {
    const std::uint32_t run = run_;
    Advance();
    if (!playing_ || run != run_) return;
    buffer.header = WaveHeader{.data = buffer.data,
                               .bufferLength = bufferLength_,
                               .bytesRecorded = 0,
                               .user = buffer.index};
    {
        const Busy busy(readerBusy_);
        reader_->Get({buffer.data, bufferLength_});
    }
    SettleReader();
    if (!playing_ || run != run_) return;
    if (reader_->IsOpen())
        Write(buffer);
    else
        EndPlaying();  // it closed itself; what was read before is heard
}

void Player::Write(CaptureBuffer& buffer) {
    if (const WaveResult result = device_->Prepare(buffer.header); result != WaveResult::kOk) {
        s_.readers.files.report.ShowError(
            FormatText("waveOutPrepareHeader err=%d", static_cast<int>(result)));
        return;
    }
    buffer.queued = true;
    ++queuedCount_;
    if (device_->Write(buffer.header) == WaveResult::kOk) return;
    buffer.queued = false;
    --queuedCount_;
    s_.readers.files.report.ShowError(
        FormatText("waveOutWrite bufid=%d", static_cast<int>(buffer.index)));
}

// Behind the last buffer: an empty one, which comes back once everything before it was heard. A
// device that cannot take it is closed at once, because nothing else would come back.
void Player::Drain() {
    const bool ended = !playing_ && !paused_ && !drainHold_ && queuedCount_ == 0;
    if (device_ == nullptr || !ended || markerOut_) return;
    endMarker_ = WaveHeader{.data = nullptr,
                            .bufferLength = 0,
                            .bytesRecorded = 0,
                            .user = static_cast<std::uint32_t>(kBuffers)};
    Text failure;
    if (const WaveResult result = device_->Prepare(endMarker_); result != WaveResult::kOk)
        failure = FormatText("waveOutPrepareHeader0 err=%d", static_cast<int>(result));
    else if (device_->Write(endMarker_) != WaveResult::kOk)
        failure = u"waveOutWrite 0";
    markerOut_ = failure.empty();
    if (markerOut_) return;
    s_.readers.files.report.ShowError(failure);
    PlayedOut();
}

void Player::PlayedOut() {
    if (device_ == nullptr || playing_ || paused_ || queuedCount_ > 0) return;
    WavExitPlaying();
    s_.listener.OnPlayedOut();
}

}  // namespace orma
