#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "audio/engine/capture_buffers.h"
#include "audio/engine/input_processing.h"
#include "audio/engine/recorder_listener.h"
#include "audio/files/level_sheet.h"
#include "audio/files/writer_slot.h"
#include "platform/clock.h"
#include "platform/external_recorder.h"
#include "platform/spdif_card.h"
#include "platform/wave.h"

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
    ExternalRecorder* externalRecorder = nullptr;  // null: none attached
    SpdifCard* spdif = nullptr;                    // null: not the selected input
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
/// Time inside a recording counts buffers: 5 << shift of them a second. UI thread.
class Recorder : private WaveInEvents {
  public:
    explicit Recorder(RecorderServices services);
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The wave input to open; empty: any that takes the format.
    void SetInputDevice(const Text& name) { inputDevice_ = name; }

    /// Opens the device if needed and starts monitoring: 0 on success, 1 on failure or refusal
    /// (reported). `playbackActive` refuses the start.
    [[nodiscard]] int WavStartRecording(bool playbackActive = false);

    /// Begins saving at the next buffer; only while the engine is active (else reported).
    void WavStartRecordSaving();

    /// Ends capture; the buffers drain through WimDataMsg.
    void WavStopRecording();

    /// Handles a buffer that came back.
    void WimDataMsg(WaveHeader& header);

    /// Resets, unprepares, closes the device.
    void WavCloseRecording();

    /// Seconds of recording that fit on the project's storage; for WAV the mono figure, whatever
    /// the channels: deliberate.
    [[nodiscard]] std::uint32_t RecordingTimeLeft();

    /// Sets a mark at the saved-buffer count, while saving; refused beyond the room for marks.
    void MarkWhileRecording();

    [[nodiscard]] bool IsActive() const { return active_; }
    [[nodiscard]] bool IsSaving() const { return saving_; }
    [[nodiscard]] bool IsSavingPending() const { return countdown_ != 0; }
    [[nodiscard]] bool IsClosed() const { return device_ == nullptr; }
    [[nodiscard]] std::uint32_t SavedPeriods() const { return savedCount_; }
    [[nodiscard]] std::uint32_t Budget() const { return budget_; }
    [[nodiscard]] std::uint32_t PeakLoadMs() const { return peakLoad_; }
    [[nodiscard]] std::uint64_t LostFrames() const;

    /// Other parts hold the take while they use it: the drain then does not close the device.
    void SetDrainHold(bool hold) { drainHold_ = hold; }

  private:
    void OnWaveInData(WaveHeader& header) override;
    void OnWaveInLost(WaveLoss reason) override;
    [[nodiscard]] bool OpenDevice();
    [[nodiscard]] bool OpenSpdif();
    [[nodiscard]] std::uint32_t BudgetPeriods();
    void QueueBuffer(CaptureBuffer& buffer);
    void TakeBack(CaptureBuffer& buffer);
    void Drain();
    void StartSaving();
    void StopSaving();
    void NoteLoad(std::uint32_t milliseconds);

    RecorderServices s_;
    Text inputDevice_;
    std::unique_ptr<WaveInDevice> device_;
    WaveFormat format_;
    std::uint32_t bufferLength_ = 0;  // bytes
    bool active_ = false;
    bool saving_ = false;
    bool drainHold_ = false;
    bool indicator_ = false;
    std::uint32_t savedCount_ = 0;
    std::uint32_t budget_ = 0;
    std::uint32_t countdown_ = 0;
    std::uint32_t blink_ = 0;
    Text takeName_;
    std::array<std::uint32_t, 16> loadHistory_{};
    std::array<std::uint32_t, 99> loadLog_{};
    std::uint32_t loadCount_ = 0;
    std::uint32_t peakLoad_ = 0;
    std::uint64_t lostFrames_ = 0;
};

}  // namespace orma
