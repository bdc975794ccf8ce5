#pragma once

#include <cstdint>
#include <functional>

#include "audio/engine/input_processing.h"
#include "audio/engine/player.h"
#include "audio/engine/recorder.h"
#include "platform/desktop_helpers.h"
#include "project/project.h"
#include "transport/transport_listener.h"

namespace orma {

/// What the Record button does besides recording.
struct TransportOptions {
    bool runGainTool = false;           // the microphone-gain tool, once in a run of the program
    std::uint32_t gainToolMode = 0;     // the order of its two commands, 0 or 1
    bool closeSynchronisation = false;  // ask the desktop's synchronisation program to close
};

/// Changes the current recording; false when there was nothing to do or it failed (reported).
using EditOperation = std::function<bool(Project& project)>;

/// What the transport stands on; all outlive its use. Recorder and player may be built after it:
/// it touches them in its operations alone.
struct TransportServices {
    ReaderServices readers;
    Project& project;
    CurrentRecording& recording;
    InputProcessing& input;
    Recorder& recorder;
    Player& player;
    DesktopHelpers& desktop;
    TransportListener& listener;
};

/// The buttons of a tape recorder: decides what Record, Play, Stop, the winding and the mark
/// buttons mean in each state, and drives recorder and player. Screens forward to it and show what
/// it tells; it knows no toolkit.
///
/// The states, their lamp numbers, what they light, and how each is left:
///
///   0 stopped        Stop          Record        -> 1   monitoring begins (or 0: it does not)
///                                  Play          -> 3   from the cursor, if before the end
///                                  Rewind, F.F.  -> 5, 4   or a nudge: the edge under the cursor
///                                  Stop             to the begin and end of the last playing
///                                  Back-, ForwardMark   to the next place on that side
///   1 record-ready   Record        Play          -> 2   saving begins with the next buffer
///                                  Record, Stop  -> 0
///   2 recording      Record, Play  Record           sets a mark
///                                  Stop          -> 0   the take drains and becomes a clip
///   3 playing        Play          Rewind, F.F.  -> 5, 4   while the sound goes on
///                                  Record, Stop  -> 0
///   4 fast-forward   FastForward   Play -> 3, Rewind -> 5, Record and Stop -> 0
///   5 rewind         Rewind        Play -> 3, FastForward -> 4, Record and Stop -> 0
///
/// States 1 and 2 fall to 0 by themselves when the recorder stops: budget used up, writer
/// unhealthy, input lost. 3, 4 and 5 do when everything was heard, the end or the beginning was
/// reached, the output is lost, or somebody stops the player. What is not listed does nothing: the
/// winding and mark buttons never disturb a take, and the mark buttons are for a stopped tape. Only
/// Drag leads from 3 to kDragging and back; all that is said of 3 holds there, too.
///
/// Handlers of lit buttons receive the look that is asked for, the opposite of the present one; a
/// press of Play or of a winding button that is lit asks for nothing.
///
/// The cursor of the current recording is the one place of the transport: it follows what is heard,
/// and playing begins at it. Positions in buffer periods. UI thread.
class Transport : public RecorderListener, public PlayerListener {
  public:
    explicit Transport(TransportServices services) : s_(services) {}

    /// Counts from the next press on; at first every option is off.
    void SetOptions(const TransportOptions& options) { options_ = options; }

    // The handlers of the buttons.
    void Record(bool lit);
    void Play(bool lit);
    void Stop(bool lit);
    void Rewind(bool lit) { Wind(TransportState::kRewind, lit); }
    void FastForward(bool lit) { Wind(TransportState::kFastForward, lit); }
    void BackMark() { GoToMark(false); }
    void ForwardMark() { GoToMark(true); }

    /// A place was picked on graph or scroll bar, or editing has moved the cursor; also while
    /// playing. Outside the recording it becomes its begin or end. Ignored during a take.
    void MoveTo(std::int32_t position);

    /// A control takes hold of the place of what is played, to move it with every turn of the
    /// pointer, or lets it go: meanwhile each place is shown at once. Nothing unless it plays.
    void Drag(bool on);

    /// Plays `range` of the current recording, and what NextRange then answers, on `channels`: what
    /// playing a clip list needs. False when playing does not begin (reported).
    [[nodiscard]] bool PlayRange(PeriodRange range, std::uint16_t channels);

    /// Edits the current recording at its cursor; the player follows the cursor. False when it may
    /// not be edited: there is none, or a take is recorded or drains, whose cursor and level file
    /// are the recorder's.
    [[nodiscard]] bool Edit(const EditOperation& operation);

    /// The input is monitored or recorded, or a take drains behind a stop: the current recording is
    /// the recorder's until then.
    [[nodiscard]] bool IsCapturing() const;

    /// The state, for as long as the transport lives: the player reads it for each buffer.
    [[nodiscard]] const TransportState& State() const { return state_; }

  private:
    /// The two places that Stop goes to while stopped, of the recording at `path`.
    struct LastPlaying {
        Text path;
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    void SetTransportState(TransportState newState);
    [[nodiscard]] bool MayRunGainTool() const;
    void GetReady();
    void PlayFromCursor();
    [[nodiscard]] std::uint32_t PlaceToPlayFrom();
    [[nodiscard]] PeriodRange RangeAt(std::uint32_t position) const;
    [[nodiscard]] bool Start(TransportState state, std::uint32_t position, PeriodRange range,
                             std::uint16_t channels);
    void Wind(TransportState direction, bool lit);
    void WindFromCursor(TransportState direction);
    void Nudge(const EdgeMove& move);
    void Place(std::int32_t position);
    void GoToStopPlace();
    void GoToMark(bool forward);
    void PlayingEnded(std::uint32_t position);

    // RecorderListener
    void OnLevel(std::uint8_t level) override { s_.listener.OnLevel(level); }
    void OnSavedPeriods(std::uint32_t count) override { s_.listener.OnSavedPeriods(count); }
    void OnSavingStarted() override { s_.listener.OnSavingStarted(); }
    void OnSavingStopped() override { s_.listener.OnSavingStopped(); }
    void OnTimeLeftChanged() override { s_.listener.OnTimeLeftChanged(); }
    void OnIndicator(bool lit) override { s_.listener.OnIndicator(lit); }
    void OnMark(std::uint32_t number) override;
    void OnStopped() override;
    void OnClosed() override { s_.listener.OnClosed(); }
    void OnInputLost(WaveLoss reason) override { s_.listener.OnInputLost(reason); }

    // PlayerListener
    void OnPosition(std::uint32_t heard, std::uint8_t level) override;
    void OnPlaceMoved(std::uint32_t position) override;
    void OnCutChosen(std::int32_t index) override { s_.listener.OnCutChosen(index); }
    void OnPlaying(bool playing) override;
    std::optional<PeriodRange> NextRange() override { return s_.listener.NextRange(); }
    void OnPlayedOut() override;
    void OnOutputLost(WaveLoss reason) override;

    TransportServices s_;
    TransportOptions options_;
    TransportState state_ = TransportState::kStopped;
    LastPlaying last_;
    bool stopGoesToEnd_ = false;
    bool gainToolTried_ = false;
};

}  // namespace orma
