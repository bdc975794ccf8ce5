#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "audio/engine/capture_buffers.h"
#include "audio/engine/external_recorder_control.h"
#include "audio/engine/player_listener.h"
#include "audio/engine/transport_state.h"
#include "audio/files/audio_read.h"
#include "platform/wave.h"

namespace orma {

/// The parts of the current recording that the player reads. What they refer to may change between
/// two buffers (another clip, new cuts): it is looked at anew for each.
struct PlayedRecording {
    const Text& audioPath;
    const std::uint32_t& length;  // buffer periods
    const LevelSheet& sheet;      // cuts and levels
    std::int32_t& currentCut;     // index into the cuts, -1: none
};

/// What the player stands on; all outlive it.
struct PlayerServices {
    WaveSystem& waves;
    ReaderServices readers;  // files, audio state, decoder
    CaptureBuffers& buffers;
    PlayedRecording recording;
    const TransportState& transport;
    PlayerListener& listener;
    ExternalRecorderControl* externalRecorder = nullptr;  // null: there can be none
};

/// The playback engine: plays the current recording through the wave output, four buffers deep, and
/// leaves out what editing has cut.
///
///   Closed    -> Playing    StartPlaying: the device is opened, four buffers circulate
///   Playing   -> Draining   the end of the range, a reader that closed itself, a place outside the
///                           recording: nothing more is written, the buffers come back
///   Draining  -> Closed     the last buffer is back: an end marker is written; once it is back,
///                           everything was heard: WavExitPlaying, OnPlayedOut
///   Playing   -> Paused     StopPlaying: the queue is cut off, the device stays open
///   Paused    -> Playing    StartPlaying, without opening; buffers that are still on their way
///                           back from the pause are waited for
///   any       -> Closed     WavExitPlaying; the device is lost
///
/// For each buffer the position moves first, then the buffer of the period behind it is read, so a
/// buffer holds the period Position() - 1. What the transport says decides how it moves:
///
///   playing       one period on; inside a cut, to the end of it and of all cuts that follow
///                 without a gap: what any cut covers is never heard
///   winding       the same, but every 200 ms a second further or back, and to the ends of the
///                 recording; a target inside a cut is moved to its end, or to a second before
///                 its start
///
/// All positions and lengths are buffer periods: 5 << shift of them a second. Behind a start or a
/// moved place the first four buffers tell the screens nothing: what they hold is not yet heard.
/// Failures of the device are reported by the name of the call and leave the state as it stood,
/// unless no buffer is left to come back. Error boxes are modal and let events through: what comes
/// in behind a box of the reader waits until the reader has returned. UI thread.
class Player : private WaveOutEvents {
  public:
    static constexpr std::size_t kBuffers = 4;
    static constexpr std::uint32_t kLatencyPeriods = 3;

    explicit Player(PlayerServices services);
    ~Player() override;
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// The wave output to open; empty: any that takes the format.
    void SetOutputDevice(const Text& name) { outputDevice_ = name; }

    /// Opens the device if needed and plays from the present position, on `channels` (1 or 2);
    /// true once playing is on. Refused (reported) while playing, while `recordingActive`, and
    /// while a recording still holds the buffers.
    bool StartPlaying(std::uint16_t channels, bool recordingActive = false);

    /// Cuts the sound off and keeps the device: a pause. Only while playing.
    void StopPlaying();

    /// Stops and closes the device. When the device cannot be reset (reported), it stays open.
    void WavExitPlaying();

    /// Moves the place, also while playing. Outside 0..length - 1 it becomes 0 or the length,
    /// playing ends, and OnPlaceMoved is not told.
    void WavRestartPlaying(std::int32_t position);

    /// Handles a buffer or the end marker that came back.
    void WomDoneMsg(WaveHeader& header);

    /// What is played: [begin, end) of the current recording, an end of 0 being its end. The player
    /// itself heeds the end alone, and not while winding; the screens jump to both.
    void SetRange(PeriodRange range) { range_ = range; }
    [[nodiscard]] PeriodRange Range() const { return range_; }

    /// Where playing ends: with the range, while winding with the recording.
    [[nodiscard]] std::uint32_t End() const;

    /// While the editor holds playback, the device stays open behind the last buffer; whoever holds
    /// it calls WavExitPlaying afterwards.
    void SetDrainHold(bool hold) { drainHold_ = hold; }

    [[nodiscard]] bool IsPlaying() const { return playing_; }
    [[nodiscard]] bool IsClosed() const { return device_ == nullptr; }

    /// Playing, or buffers are still with the device: no recording may start, for the buffers are
    /// shared with it.
    [[nodiscard]] bool IsActive() const { return playing_ || queuedCount_ > 0; }

    /// The next period to be written; one beyond the end after a cut that reaches the end.
    [[nodiscard]] std::int32_t Position() const { return position_; }

    /// The period that is heard now.
    [[nodiscard]] std::uint32_t DisplayPosition() const { return display_; }

  private:
    // WaveOutEvents
    void OnWaveOutDone(WaveHeader& header) override { WomDoneMsg(header); }
    void OnWaveOutLost(WaveLoss reason) override;

    // Start, stop and close: player.cpp
    [[nodiscard]] bool OpenDevice(std::uint16_t channels);
    [[nodiscard]] bool OpenReader();
    void CloseReader();
    void SettleReader();
    [[nodiscard]] bool Begin();
    void EndPlaying();
    void Close(bool quiet);

    // The way of a buffer: player_buffers.cpp
    void TakeBack(CaptureBuffer& buffer);
    void FillAndWrite(CaptureBuffer& buffer);
    void Write(CaptureBuffer& buffer);
    void Drain();
    void PlayedOut();

    // The position: player_position.cpp
    void Advance();
    void AdvancePlaying();
    void JumpWinding(bool forward);
    [[nodiscard]] bool GoOnWithNextRange();
    void EndAt(std::uint32_t position);
    void SeekReader();
    void TellPosition(std::uint32_t levelAt);
    void ChooseCutAt(std::int64_t position);
    [[nodiscard]] std::uint32_t BehindCuts(std::uint32_t position) const;
    [[nodiscard]] std::int64_t WoundPast(std::int64_t target, bool forward) const;
    [[nodiscard]] bool IsWinding() const;
    [[nodiscard]] std::uint32_t Second() const { return s_.readers.audio.PeriodsPerSecond(); }

    PlayerServices s_;
    Text outputDevice_;
    std::unique_ptr<WaveOutDevice> device_;
    std::unique_ptr<JStreamAudioReadFile> reader_;
    PlaybackFormat output_;           // of the open device
    std::uint32_t bufferLength_ = 0;  // bytes
    WaveHeader endMarker_;
    PeriodRange range_;
    std::int32_t position_ = 0;
    std::uint32_t display_ = 0;
    std::uint32_t silence_ = 0;  // buffers that do not tell the position yet
    std::uint32_t windCountdown_ = 0;
    std::size_t queuedCount_ = 0;  // of our buffers, which the device holds
    std::uint32_t run_ = 0;  // changes with every start and end, also behind a box or a listener
    bool playing_ = false;
    bool starting_ = false;  // waits for the buffers of a pause
    bool paused_ = false;    // the buffers that come back do not end playing
    bool markerOut_ = false;
    bool drainHold_ = false;
    bool readerBusy_ = false;   // the reader, or who looks for the next range, may show a box
    bool closeReader_ = false;  // ... behind which its end was asked for
    bool seekReader_ = false;   // ... behind which the place was moved

    // Buffers that came back and wait for TakeBack, oldest first.
    std::array<std::uint32_t, kBuffers> returned_{};
    std::size_t returnedCount_ = 0;
};

}  // namespace orma
