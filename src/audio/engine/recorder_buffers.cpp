// The way of one buffer: device -> processing -> level -> writer -> device again, or the drain.

#include <algorithm>

#include "audio/engine/busy.h"
#include "audio/engine/recorder.h"
#include "audio/files/level_tables.h"
#include "audio/files/peak_level.h"
#include "base/trace.h"

namespace orma {

void Recorder::QueueBuffer(CaptureBuffer& buffer) {
    buffer.header = WaveHeader{.data = buffer.data,
                               .bufferLength = bufferLength_,
                               .bytesRecorded = 0,
                               .user = buffer.index};
    if (device_->Prepare(buffer.header) != WaveResult::kOk) {
        s_.report.ShowError(u"waveInPrepareHeader");
        return;
    }
    buffer.queued = true;
    const bool added = s_.spdif != nullptr ? s_.spdif->PDAudioInAddBuffer(buffer.header)
                                           : device_->Add(buffer.header) == WaveResult::kOk;
    if (added) return;
    buffer.queued = false;
    s_.report.ShowError(s_.spdif != nullptr ? u"PDAudioInAddBuffer" : u"waveInAddBuffer");
}

void Recorder::WimDataMsg(WaveHeader& header) {
    if (header.user >= CaptureBuffers::kCount) {
        s_.report.ShowError(u"WimDataMsg");
        return;
    }
    const bool expected = device_ != nullptr && s_.buffers[header.user].queued;
    if (!expected || returnedCount_ == returned_.size()) return;
    returned_[returnedCount_++] = header.user;
    while (returnedCount_ > 0 && !outsideBusy_) {
        CaptureBuffer& buffer = s_.buffers[returned_.front()];
        std::rotate(returned_.begin(), returned_.begin() + 1, returned_.end());
        --returnedCount_;
        Process(buffer);
    }
}

void Recorder::Process(CaptureBuffer& buffer) {
    const std::uint32_t startTicks = s_.clock.Ticks();
    TakeBack(buffer);
    if (active_)
        Circulate(buffer, startTicks);
    else
        Drain(buffer);
    if (loss_ && active_ && !outsideBusy_) EndLostInput();
}

// The card marks every buffer as full, but only the last one was cut short by its stop.
bool Recorder::IsFull(const CaptureBuffer& buffer) const {
    if (s_.spdif != nullptr) return s_.spdif->HasMore();
    return buffer.header.bytesRecorded >= bufferLength_;
}

void Recorder::TakeBack(CaptureBuffer& buffer) {
    buffer.queued = false;
    // What a stop flushes back falls into two kinds. Full buffers are ordinary sound that had
    // waited for a busy UI thread: they are treated like any other. The one that the stop cut short
    // is saved as it is, unprocessed, with the level that its place in the ring last held.
    if (active_ || (saving_ && IsFull(buffer))) ProcessAndMeasure(buffer);
    // The first flushed buffer is always saved, further ones only when they hold sound.
    if (saving_ && (active_ || !drained_ || buffer.header.bytesRecorded > 0)) Save(buffer);

    if (device_ == nullptr) return;
    if (device_->Unprepare(buffer.header) != WaveResult::kOk) {
        s_.report.ShowError(u"waveInUnprepareHeader");
        return;
    }
    if (!active_) return;
    if (!s_.audio.externalRecorder) s_.listener.OnLevel(buffer.level);
    if (saving_) s_.listener.OnSavedPeriods(static_cast<std::uint32_t>(s_.sheet.levels.size()));
}

void Recorder::ProcessAndMeasure(CaptureBuffer& buffer) {
    const std::size_t bytes = bufferLength_;
    if (s_.spdif != nullptr && spdifFormat_.bitsPerSample == 24) {
        buffer.level = LevelOfPeak(PeakOf24Bit({buffer.data, bytes}));
        return;
    }
    const std::span<std::int16_t> samples{reinterpret_cast<std::int16_t*>(buffer.data), bytes / 2};
    if (s_.spdif == nullptr) s_.input.ProcessInputBuffer(samples, format_.channels);
    buffer.level = LevelOfPeak(PeakOf16Bit(samples));
}

void Recorder::Save(CaptureBuffer& buffer) {
    JStreamAudioWrite* const writer = s_.writers.Current();
    s_.sheet.levels.push_back(buffer.level);
    bool healthy = false;
    if (writer != nullptr) {
        const Busy busy(outsideBusy_);
        writer->WriteSamples(buffer.data, bufferLength_);
        healthy = writer->IsOpen();
    }
    if (!healthy) WavStopRecording();
}

void Recorder::Circulate(CaptureBuffer& buffer, std::uint32_t startTicks) {
    if (saving_ && ++savedCount_ >= MostPeriods()) WavStopRecording();
    if (!active_) return;
    QueueBuffer(buffer);
    if (!active_) return;  // stopped behind an error box
    if (!s_.buffers.AnyQueued()) {
        WavStopRecording();  // every buffer failed: nothing would come back any more
        return;
    }
    if (saving_) {
        load_.Note(s_.clock.Ticks() - startTicks, s_.audio.PeriodsPerSecond());
        return;
    }
    load_.Clear();
    if (countdown_ != 0) {
        if (--countdown_ == 0) StartSaving();
        return;
    }
    if (blink_ != 0) --blink_;
    if (blink_ != 0) return;
    blink_ = 2U << s_.audio.resolutionShift;  // 0.4 s
    indicator_ = !indicator_;
    s_.listener.OnIndicator(indicator_);
}

// One buffer that came back after the end of capture. Behind the sixteen buffers the device may
// hold a backlog: a full buffer says that more sound may wait there, so it is queued once more and
// the reset below fills it or returns it empty. The take ends at the first buffer that is not full,
// which is the very first one unless the UI thread had fallen behind.
void Recorder::Drain(CaptureBuffer& buffer) {
    if (device_ == nullptr) return;
    drained_ = true;
    if (!saving_ || !IsFull(buffer))
        StopSaving();
    else if (s_.sheet.levels.size() < MostPeriods())
        QueueBuffer(buffer);
    if (device_ != nullptr && device_->Reset() != WaveResult::kOk) {
        StopSaving();  // nothing more will come back
        s_.report.ShowError(u"waveInReset");
    }
    if (device_ == nullptr) return;
    // Once stopped, the card keeps the empty buffers of its ring; closing takes them out of it.
    if (s_.spdif != nullptr ? s_.spdif->IsReturning() : s_.buffers.AnyQueued()) return;
    CompleteDrain();
}

void Recorder::StartSaving() {
    saving_ = true;
    created_ = false;
    TellFormat();  // a file opened since the start may have left its own
    if (JStreamAudioWrite* const writer = s_.writers.Current(); writer != nullptr) {
        const Busy busy(outsideBusy_);
        writer->Open(takeName_);
        created_ = writer->IsOpen();
    }
    Trace("Start saving");
    s_.listener.OnSavingStarted();
}

void Recorder::StopSaving() {
    if (!saving_ && countdown_ == 0) return;
    const bool began = saving_;
    const auto length = static_cast<std::uint32_t>(s_.sheet.levels.size());
    const bool created = began && created_;
    const bool keep = created && length >= s_.audio.PeriodsPerSecond();
    keptPeriods_ = keep ? length : 0;
    saving_ = false;
    countdown_ = 0;
    {
        const Busy busy(outsideBusy_);
        if (began) {
            Trace("Stop saving");
            if (JStreamAudioWrite* const writer = s_.writers.Current(); writer != nullptr)
                writer->Close();
        }
        if (keep) {
            s_.sheet.rangeStart = 0;
            s_.sheet.rangeEnd = length;
            s_.sheet.resolutionShift = s_.audio.resolutionShift;
            s_.takes.TakeFinished();
        } else {
            savedCount_ = 0;
            s_.takes.TakeDiscarded(created);
        }
    }
    s_.listener.OnSavingStopped();
}

}  // namespace orma
