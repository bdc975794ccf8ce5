#include "audio/engine/recorder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "audio/engine/recording_budget.h"
#include "audio/files/buffer_period.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr const char16_t* kNoTimeLeft =
    u"You have no recording-\ntime left in your current\nproject. Please open\nanother project on\n"
    u"another storage medium.";

const char16_t* SpdifFailure(SpdifResult result) {
    switch (result) {
        case SpdifResult::kNoCard:
            return u"No PDAudio card present";
        case SpdifResult::kNoDriver:
            return u"No driver installed";
        case SpdifResult::kRateNotForMp2:
            return u"Sample rate not supported at mp2-recording";
        default:
            return u"No valid digital input signal";
    }
}

}  // namespace

Recorder::Recorder(RecorderServices services) : s_(services) {}

Recorder::~Recorder() {
    Close(true);
}

int Recorder::WavStartRecording(bool playbackActive) {
    if (active_ || playbackActive) return 1;
    if (flushing_ && saving_) {
        Trace("start refused: the last take is not drained yet");
        return 1;
    }
    if (s_.audio.mp2 && !s_.audio.bitrate.IsLegalFor(s_.audio.stereo)) {
        s_.report.ShowError(u"Illegal bitrate");
        return 1;
    }
    WavCloseRecording();
    if (!OpenDevice() || !HasTimeLeft()) return 1;
    PrepareWriter();
    s_.input.ClearState();
    for (CaptureBuffer& buffer : s_.buffers)
        QueueBuffer(buffer);
    if (!s_.buffers.AnyQueued()) return 1;  // nothing would ever come back
    if (device_->Start() != WaveResult::kOk) {
        s_.report.ShowError(u"waveInStart");
        return 1;
    }
    active_ = true;
    savedCount_ = 0;
    s_.listener.OnTimeLeftChanged();
    return 0;
}

bool Recorder::OpenDevice() {
    lostFrames_ = 0;
    keptPeriods_ = 0;
    loss_.reset();
    const std::uint16_t channels = s_.audio.Channels();
    format_.channels = channels;
    format_.blockAlign = static_cast<std::uint16_t>(2 * channels);
    format_.bitsPerSample = 16;
    if (!(s_.spdif != nullptr ? OpenSpdif() : OpenWave())) return false;
    TellFormat();
    s_.input.SetSampleRate(CaptureRate());
    const std::uint32_t periodBytes =
        s_.audio.mp2 ? s_.audio.bitrate.BytesPerPeriod(s_.audio.resolutionShift) : bufferLength_;
    takeLimit_ = MostPeriodsOfFile(periodBytes);
    return true;
}

bool Recorder::OpenSpdif() {
    const SpdifResult result = s_.spdif->PDAudioStart(
        s_.audio.mp2, format_.channels, s_.audio.resolutionShift, *this, spdifFormat_);
    if (result != SpdifResult::kCapturing) {
        s_.report.ShowError(SpdifFailure(result));
        return false;
    }
    // The wave device beside the card prepares the buffers; the card fills them at its own rate.
    format_.samplesPerSecond = 44100;
    format_.averageBytesPerSecond = 88200U * format_.channels;
    bufferLength_ = std::min(spdifFormat_.bufferLength, CaptureBuffers::kBytes);
    if (s_.waves.OpenInput(inputDevice_, format_, idle_, device_) == WaveResult::kOk) return true;
    device_.reset();
    s_.spdif->PDAudioClose();
    s_.report.ShowError(u"waveInOpen");
    return false;
}

bool Recorder::OpenWave() {
    const std::uint32_t base = s_.audio.externalRecorder ? kPeriodBytes48000 : kPeriodBytes44100;
    format_.samplesPerSecond = CaptureRate();
    format_.averageBytesPerSecond = CaptureRate() * format_.blockAlign;
    bufferLength_ = (base >> s_.audio.resolutionShift) * format_.channels;
    if (s_.waves.OpenInput(inputDevice_, format_, *this, device_) != WaveResult::kOk) {
        device_.reset();
        s_.report.ShowError(u"waveInOpen");
        return false;
    }
    if (s_.externalRecorder != nullptr) s_.externalRecorder->LineOpened(RecorderLine::kInput);
    return true;
}

// The device stays open when there is no time left; the next start closes it.
bool Recorder::HasTimeLeft() {
    budget_ = RecordingPeriods(FreeSpaceKilobytes(), s_.audio, CaptureRate(), format_.channels);
    if (budget_ == 0) s_.report.Boxes().Show({.text = kNoTimeLeft});
    return budget_ != 0;
}

void Recorder::PrepareWriter() {
    const WriterKind local = s_.audio.mp2 ? WriterKind::kMp2File : WriterKind::kWavFile;
    const WriterKind upload = s_.audio.mp2 ? WriterKind::kMp2Ftp : WriterKind::kWavFtp;
    writerKind_ = s_.takes.LiveFtp() ? upload : local;
    s_.writers.SelectWriter(writerKind_);
    if (s_.writers.Current() == nullptr) {
        // Without a way to upload, the take is still worth having.
        Trace("no writer of kind %d, recording locally", static_cast<int>(writerKind_));
        writerKind_ = local;
        s_.writers.SelectWriter(writerKind_);
    } else if (writerKind_ == upload) {
        s_.writers.Current()->Connect();
    }
}

void Recorder::WavStartRecordSaving() {
    if (!active_) {
        s_.report.ShowError(u"WavStartRecordSaving");
        return;
    }
    if (saving_ || countdown_ != 0) return;

    s_.sheet.Clear(s_.audio.resolutionShift);
    takeName_ = s_.takes.PrepareTake();
    // A publication since the start may have taken the writer's place.
    if (s_.writers.Kind() != writerKind_) PrepareWriter();
    if (!active_) {  // the input was lost behind an error box
        s_.takes.TakeDiscarded(false);
        return;
    }

    // Ten hours at twenty periods a second: the way of the samples shall not allocate.
    s_.sheet.levels.reserve(720000);
    s_.sheet.marks.reserve(LevelSheet::kMaxMarks);
    savedCount_ = 0;
    countdown_ = 1;
}

void Recorder::WavStopRecording() {
    if (!active_) return;
    EndMonitoring();
    if (device_->Stop() != WaveResult::kOk) {
        s_.report.ShowError(u"waveInStop");
        return;
    }
    if (device_->Reset() != WaveResult::kOk) {
        // No buffer will come back to close the take.
        StopSaving();
        s_.report.ShowError(u"waveInReset");
        return;
    }
    flushing_ = true;
    if (!s_.buffers.AnyQueued()) CompleteDrain();
}

void Recorder::EndMonitoring() {
    s_.listener.OnTimeLeftChanged();
    active_ = false;
    drained_ = false;
    load_.TraceLog();
    indicator_ = false;
    s_.listener.OnIndicator(false);
    s_.listener.OnStopped();
    if (s_.spdif != nullptr) s_.spdif->PDAudioStop();
}

void Recorder::OnWaveInLost(WaveLoss reason) {
    if (device_ == nullptr) return;
    Trace("sound input %s", reason == WaveLoss::kVanished ? "vanished" : "stalled");
    loss_ = reason;
    if (!outsideBusy_) EndLostInput();  // otherwise once the buffer at work is done
}

// A lost device cannot be asked to stop; its reset returns what it had delivered.
void Recorder::EndLostInput() {
    if (active_) EndMonitoring();
    if (device_->Reset() != WaveResult::kOk) {
        CompleteDrain();
        return;
    }
    flushing_ = true;
    if (!s_.buffers.AnyQueued()) CompleteDrain();
}

void Recorder::CompleteDrain() {
    StopSaving();
    const std::optional<WaveLoss> loss = std::exchange(loss_, std::nullopt);
    if (!drainHold_) {
        Close(loss.has_value());
        s_.listener.OnClosed();
    }
    if (loss) TellLoss(*loss);
}

void Recorder::TellLoss(WaveLoss reason) {
    s_.listener.OnInputLost(reason);
    Text text = u"Sound input lost";
    if (const std::uint32_t seconds = keptPeriods_ / s_.audio.PeriodsPerSecond(); seconds > 0)
        text += FormatText("\nRecorded and kept: %02u:%02u", seconds / 60, seconds % 60);
    s_.report.ShowError(text);
}

void Recorder::WavCloseRecording() {
    Close(false);
}

// Quiet: what fails is traced, because the user learns of the loss itself or is leaving.
void Recorder::Close(bool quiet) {
    if (device_ == nullptr) return;
    // Taken out first: an event behind one of the boxes finds the engine closed.
    std::unique_ptr<WaveInDevice> device = std::move(device_);
    const auto report = [&](const Text& call) {
        if (quiet)
            Trace("%s", ToUtf8(call).c_str());
        else
            s_.report.ShowError(call);
    };
    active_ = false;
    flushing_ = false;
    returnedCount_ = 0;
    const bool reset = device->Reset() == WaveResult::kOk;
    if (!reset) report(u"waveInReset at exit");
    for (CaptureBuffer& buffer : s_.buffers) {
        if (!buffer.queued) continue;
        const WaveResult result = device->Unprepare(buffer.header);
        // A device that was reset may hold its buffers until they have come back: no fault, the
        // close below releases them.
        const bool held = reset && result == WaveResult::kFailed;
        if (result != WaveResult::kOk && !held) report(u"waveInUnprepareHeader .h");
        buffer.queued = false;
    }
    lostFrames_ = s_.spdif != nullptr ? s_.spdif->LostFrames() : device->LostFrames();
    if (lostFrames_ != 0) Trace("lost frames=%llu", static_cast<unsigned long long>(lostFrames_));
    if (s_.spdif != nullptr) s_.spdif->PDAudioClose();
    if (s_.externalRecorder != nullptr) s_.externalRecorder->LineClosed(RecorderLine::kInput);
    StopSaving();
    if (quiet) return;  // a lost device may answer late or never; nobody waits for it
    const WaveResult closed = device->Close();
    device.reset();
    if (closed != WaveResult::kOk) report(u"waveInClose");
}

std::uint64_t Recorder::LostFrames() const {
    if (device_ == nullptr) return lostFrames_;
    return s_.spdif != nullptr ? s_.spdif->LostFrames() : device_->LostFrames();
}

std::uint32_t Recorder::CaptureRate() const {
    if (s_.spdif != nullptr) return spdifFormat_.sampleRate;
    return s_.audio.externalRecorder ? 48000 : 44100;
}

// What the writers are to put into a take's header, or to convert from.
void Recorder::TellFormat() {
    s_.audio.sampleRate = CaptureRate();
    s_.audio.bitsPerSample = spdifFormat_.bitsPerSample;  // 16 without the card
}

std::uint32_t Recorder::FreeSpaceKilobytes() {
    std::uint64_t bytes = 0;
    if (const SystemError error = s_.storage.FreeBytes(s_.takes.StorageFolder(), bytes);
        error != 0) {
        Trace("free space unknown, error %u", error);
        return 0;
    }
    return FreeKilobytes(bytes);
}

std::uint32_t Recorder::RecordingTimeLeft() {
    const std::uint64_t seconds =
        RecordingSeconds(FreeSpaceKilobytes(), s_.audio, CaptureRate(), 1);
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(seconds, std::numeric_limits<std::uint32_t>::max()));
}

bool Recorder::MarkWhileRecording() {
    if (!active_ || !saving_) return false;
    if (s_.sheet.marks.size() >= LevelSheet::kMaxMarks) {
        Trace("mark refused: %zu marks are set", s_.sheet.marks.size());
        return false;
    }
    s_.sheet.marks.push_back(savedCount_);
    s_.writers.Context().journal.AddMark(savedCount_);
    s_.listener.OnMark(static_cast<std::uint32_t>(s_.sheet.marks.size()));
    return true;
}

}  // namespace orma
