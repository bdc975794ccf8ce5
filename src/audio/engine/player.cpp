#include "audio/engine/player.h"

#include <utility>

#include "audio/engine/busy.h"
#include "base/trace.h"

namespace orma {

Player::Player(PlayerServices services) : s_(services) {}

Player::~Player() {
    EndPlaying();
    if (device_ != nullptr) (void)device_->Reset();
    Close(true);
}

bool Player::StartPlaying(std::uint16_t channels, bool recordingActive) {
    const bool buffersTaken = queuedCount_ == 0 && s_.buffers.AnyQueued();
    if (recordingActive || playing_ || readerBusy_ || buffersTaken) {
        s_.readers.files.report.ShowError(u"StartPlaying");
        return false;
    }
    if (!OpenDevice(channels)) return false;
    bufferLength_ = output_.BufferBytes(s_.readers.audio.resolutionShift);
    playing_ = true;
    const std::uint32_t run = ++run_;
    if (!OpenReader() || run != run_) {
        if (run == run_) EndPlaying();
        return false;
    }
    paused_ = false;
    starting_ = queuedCount_ > 0;
    s_.listener.OnPlaying(true);
    return run == run_ && (starting_ || Begin());
}

// A device that is open in another format is of no use for this recording.
bool Player::OpenDevice(std::uint16_t channels) {
    const AudioState& audio = s_.readers.audio;
    const PlaybackFormat wanted{.sampleRate = audio.externalRecorder ? 48000U : 44100U,
                                .channels = static_cast<std::uint16_t>(channels == 2 ? 2 : 1)};
    if (device_ != nullptr && wanted.sampleRate == output_.sampleRate &&
        wanted.channels == output_.channels)
        return true;
    WavExitPlaying();
    if (device_ != nullptr) return false;
    output_ = wanted;
    const auto align = static_cast<std::uint16_t>(2 * wanted.channels);
    const WaveFormat format{.channels = wanted.channels,
                            .samplesPerSecond = wanted.sampleRate,
                            .averageBytesPerSecond = wanted.sampleRate * align,
                            .blockAlign = align,
                            .bitsPerSample = 16};
    if (s_.waves.OpenOutput(outputDevice_, format, *this, device_) != WaveResult::kOk) {
        device_.reset();
        s_.readers.files.report.ShowError(u"waveOutOpen");
        return false;
    }
    if (s_.externalRecorder != nullptr) s_.externalRecorder->LineOpened(RecorderLine::kOutput);
    return device_ != nullptr;
}

bool Player::OpenReader() {
    const AudioState& audio = s_.readers.audio;
    reader_ = MakeReader(s_.readers, s_.recording.audioPath, audio.mp2);
    bool measured = false;
    {
        const Busy busy(readerBusy_);
        measured = reader_->Measure() > 0;
        if (measured) reader_->OpenAt(static_cast<std::uint32_t>(position_), output_);
    }
    SettleReader();
    return measured && reader_->IsOpen();
}

void Player::CloseReader() {
    closeReader_ = reader_ != nullptr;
    SettleReader();
}

// What was asked of the reader while it was at work.
void Player::SettleReader() {
    if (readerBusy_) return;
    const bool seek = std::exchange(seekReader_, false);
    if (std::exchange(closeReader_, false))
        reader_->CloseReader();
    else if (seek)
        SeekReader();
}

// Fills and writes the four buffers behind a pause, so that they follow each other without a gap.
bool Player::Begin() {
    starting_ = false;
    const std::uint32_t run = run_;
    if (device_->Pause() != WaveResult::kOk) Trace("waveOutPause");
    silence_ = kBuffers;
    windCountdown_ = 0;
    for (std::size_t i = 0; i < kBuffers && playing_ && run == run_; ++i)
        FillAndWrite(s_.buffers[i]);
    // A range that ends within the four buffers has ended the run, but they are to be heard.
    const bool stopped = paused_ || device_ == nullptr || starting_;
    if (stopped) return false;
    if (device_->Restart() != WaveResult::kOk) {
        s_.readers.files.report.ShowError(u"waveOutRestart");
        WavExitPlaying();
        return false;
    }
    if (queuedCount_ == 0) EndPlaying();  // nothing would come back
    Drain();
    return true;
}

// What was written goes on to be heard.
void Player::EndPlaying() {
    ++run_;
    playing_ = false;
    starting_ = false;
    CloseReader();
}

void Player::StopPlaying() {
    if (!playing_) return;
    EndPlaying();
    paused_ = true;
    if (device_ != nullptr && device_->Reset() != WaveResult::kOk)
        s_.readers.files.report.ShowError(u"waveOutReset");
    s_.listener.OnPlaying(false);
}

void Player::WavExitPlaying() {
    StopPlaying();
    if (device_ == nullptr) return;
    Trace("WavExitPlaying");
    if (device_->Reset() != WaveResult::kOk) {
        s_.readers.files.report.ShowError(u"waveOutReset");
        return;
    }
    Close(false);
}

// The buffers that a reset has not returned yet are released with the device. Quiet: it is lost, or
// the program ends, and nobody waits for its answer.
void Player::Close(bool quiet) {
    if (device_ == nullptr) return;
    // Taken out first: an event of its closing finds the engine closed.
    std::unique_ptr<WaveOutDevice> device = std::move(device_);
    if (s_.externalRecorder != nullptr) s_.externalRecorder->LineClosed(RecorderLine::kOutput);
    for (std::size_t i = 0; i < kBuffers; ++i) {
        (void)device->Unprepare(s_.buffers[i].header);
        s_.buffers[i].queued = false;
    }
    queuedCount_ = 0;
    returnedCount_ = 0;
    markerOut_ = false;
    paused_ = false;
    if (quiet) return;
    const WaveResult closed = device->Close();
    device.reset();
    if (closed != WaveResult::kOk) s_.readers.files.report.ShowError(u"waveOutClose");
}

void Player::OnWaveOutLost(WaveLoss reason) {
    if (device_ == nullptr) return;
    Trace("sound output %s", reason == WaveLoss::kVanished ? "vanished" : "stalled");
    EndPlaying();
    Close(true);
    s_.listener.OnOutputLost(reason);
    s_.readers.files.report.ShowError(u"Sound output lost");
}

}  // namespace orma
