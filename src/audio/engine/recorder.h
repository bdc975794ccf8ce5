#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "audio/engine/capture_buffers.h"
#include "audio/engine/external_recorder_control.h"
#include "audio/engine/input_processing.h"
#include "audio/engine/load_meter.h"
#include "audio/engine/recorder_listener.h"
#include "audio/engine/spdif_input.h"
#include "audio/files/level_sheet.h"
#include "audio/files/writer_slot.h"
#include "platform/clock.h"
#include "platform/storage.h"
#include "platform/wave.h"
#include "report/error_reporter.h"

namespace orma {

/// What the recorder stands on; all outlive it.
struct RecorderServices {
    WaveSystem& waves;
    Clock& clock;
    Storage& storage;
    ErrorReporter& report;
    AudioState& audio;
    CaptureBuffers& buffers;
    InputProcessing& input;
    WriterSlot& writers;
    LevelSheet& sheet;  // of the current recording: levels and marks are appended while saving
    TakeKeeper& takes;
    RecorderListener& listener;
    ExternalRecorderControl* externalRecorder = nullptr;  // null: there can be none
    SpdifInput* spdif = nullptr;                          // null: not the selected input
};

/// The recording engine: owns the wave input and the circulation of sixteen capture buffers.
///
///   Closed          -> Monitoring       WavStartRecording
///   Monitoring      -> Saving pending   WavStartRecordSaving (countdown 1)
///   Saving pending  -> Saving           the next buffer
///   Saving          -> Draining         WavStopRecording: stop button, budget used up, writer
///                                       unhealthy, input device lost
///   Monitoring      -> Draining         WavStopRecording
///   Draining        -> Closed           the last buffer is back: WavCloseRecording
///
/// Time inside a recording counts buffers: 5 << shift of them a second. Failures of the device are
/// reported by the name of the call and leave the state as it stood. Error boxes are modal and let
/// events through: a buffer that comes back behind a box of the writer or of the project waits
/// until that call has returned; behind all other boxes the recording goes on. UI thread.
class Recorder : private WaveInEvents {
  public:
    explicit Recorder(RecorderServices services);

    /// Closes the device; a take that is still open is closed and kept.
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The wave input to open; empty: any that takes the format.
    void SetInputDevice(const Text& name) { inputDevice_ = name; }

    /// Makes the card the input, or with null the wave device again. Only while closed.
    void SetSpdifInput(SpdifInput* spdif) { s_.spdif = spdif; }

    /// Opens the device if needed and starts monitoring: 0 on success, 1 on failure or refusal
    /// (reported). Refused without a word while `playbackActive`, while active, and for the moment
    /// in which the buffers of the last take are still on their way back.
    [[nodiscard]] int WavStartRecording(bool playbackActive = false);

    /// Begins saving at the next buffer; only while the engine is active (else reported). Does
    /// nothing while a take is pending or being saved.
    void WavStartRecordSaving();

    /// Ends capture; the buffers drain through WimDataMsg, OnClosed tells the end.
    void WavStopRecording();

    /// Handles a buffer that came back.
    void WimDataMsg(WaveHeader& header);

    /// Resets, unprepares, closes the device. A take that is still open is closed and kept without
    /// what the device still held: to lose nothing, stop and wait for OnClosed.
    void WavCloseRecording();

    /// Seconds of recording that fit on the project's storage; for WAV the mono figure, whatever
    /// the channels: deliberate.
    [[nodiscard]] std::uint32_t RecordingTimeLeft();

    /// Sets a mark at the saved-buffer count; false while nothing is saved and (traced, because a
    /// box would disturb the take) beyond the room for marks.
    bool MarkWhileRecording();

    [[nodiscard]] bool IsActive() const { return active_; }
    [[nodiscard]] bool IsSaving() const { return saving_; }
    [[nodiscard]] bool IsSavingPending() const { return countdown_ != 0; }
    [[nodiscard]] bool IsClosed() const { return device_ == nullptr; }
    [[nodiscard]] std::uint32_t SavedPeriods() const { return savedCount_; }
    [[nodiscard]] std::uint32_t Budget() const { return budget_; }
    [[nodiscard]] std::uint32_t PeakLoadMs() const { return load_.PeakMs(); }

    /// Sample frames that the device lost since the last start; remembered when it is closed.
    [[nodiscard]] std::uint64_t LostFrames() const;

    /// Other parts hold the take while they use it: the drain then does not close the device.
    void SetDrainHold(bool hold) { drainHold_ = hold; }

  private:
    /// The wave device beside the S/PDIF card: it holds no buffer, so it may come and go.
    class IdleEvents : public WaveInEvents {
        void OnWaveInData(WaveHeader&) override {}
        void OnWaveInLost(WaveLoss) override {}
    };

    // WaveInEvents
    void OnWaveInData(WaveHeader& header) override { WimDataMsg(header); }
    void OnWaveInLost(WaveLoss reason) override;

    // Start, stop and close: recorder.cpp
    [[nodiscard]] bool OpenDevice();
    [[nodiscard]] bool OpenSpdif();
    [[nodiscard]] bool OpenWave();
    [[nodiscard]] bool HasTimeLeft();
    void PrepareWriter();
    void EndMonitoring();
    void EndLostInput();
    void CompleteDrain();
    void TellLoss(WaveLoss reason);
    void Close(bool quiet);
    [[nodiscard]] std::uint32_t CaptureRate() const;
    void TellFormat();
    [[nodiscard]] std::uint32_t FreeSpaceKilobytes();

    // The way of a buffer: recorder_buffers.cpp
    void QueueBuffer(CaptureBuffer& buffer);
    void Process(CaptureBuffer& buffer);
    void TakeBack(CaptureBuffer& buffer);
    void ProcessAndMeasure(CaptureBuffer& buffer);
    void Save(CaptureBuffer& buffer);
    void Circulate(CaptureBuffer& buffer, std::uint32_t startTicks);
    void Drain(CaptureBuffer& buffer);
    [[nodiscard]] bool IsFull(const CaptureBuffer& buffer) const;
    [[nodiscard]] std::uint32_t MostPeriods() const { return std::min(budget_, takeLimit_); }
    void StartSaving();
    void StopSaving();

    RecorderServices s_;
    IdleEvents idle_;
    Text inputDevice_;
    std::unique_ptr<WaveInDevice> device_;
    WaveFormat format_;
    SpdifFormat spdifFormat_;
    std::uint32_t bufferLength_ = 0;  // bytes
    bool active_ = false;
    bool saving_ = false;
    bool created_ = false;   // the writer could create the take
    bool flushing_ = false;  // a reset promised to return every buffer of the take
    bool drained_ = false;   // the drain has seen its first buffer
    bool drainHold_ = false;
    bool indicator_ = false;
    bool outsideBusy_ = false;  // the writer or the project is at work, perhaps behind a box
    std::uint32_t savedCount_ = 0;
    std::uint32_t budget_ = 0;
    std::uint32_t takeLimit_ = 0;  // periods that 32-bit file sizes hold
    std::uint32_t countdown_ = 0;
    std::uint32_t blink_ = 0;
    std::uint32_t keptPeriods_ = 0;  // of the last take, 0: discarded
    WriterKind writerKind_ = WriterKind::kNone;
    Text takeName_;
    LoadMeter load_;
    std::optional<WaveLoss> loss_;
    std::uint64_t lostFrames_ = 0;

    // Buffers that came back and wait for Process, oldest first.
    std::array<std::uint32_t, CaptureBuffers::kCount> returned_{};
    std::size_t returnedCount_ = 0;
};

}  // namespace orma
