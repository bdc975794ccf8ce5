#include "transport/transport.h"

#include <algorithm>
#include <utility>

#include "audio/files/level_tables.h"
#include "project/mark_search.h"
#include "project/recording_access.h"

namespace orma {

LitButtons ButtonsOf(TransportState state) {
    switch (state) {
        case TransportState::kStopped:
            return {.stop = true};
        case TransportState::kRecordReady:
            return {.record = true};
        case TransportState::kRecording:
            return {.play = true, .record = true};
        case TransportState::kFastForward:
            return {.fastForward = true};
        case TransportState::kRewind:
            return {.rewind = true};
        default:
            return {.play = true};
    }
}

void Transport::SetTransportState(TransportState newState) {
    if (newState == state_) return;
    state_ = newState;
    s_.listener.OnTransportState(state_, ButtonsOf(state_));
}

bool Transport::IsCapturing() const {
    return state_ == TransportState::kRecordReady || state_ == TransportState::kRecording ||
           s_.recorder.IsActive() || s_.recorder.IsSaving() || s_.recorder.IsSavingPending();
}

void Transport::Record(bool lit) {
    if (lit) s_.input.ChooseEqualizerForHeadset();
    if (state_ == TransportState::kStopped)
        GetReady();
    else if (state_ == TransportState::kRecording)
        (void)s_.recorder.MarkWhileRecording();  // refused while saving is about to begin
    else
        Stop(true);
}

// An external recorder sets its own gain.
bool Transport::MayRunGainTool() const {
    return options_.runGainTool && !gainToolTried_ && !s_.readers.audio.externalRecorder;
}

void Transport::GetReady() {
    if (MayRunGainTool()) {
        gainToolTried_ = true;
        // Without such a tool the press is not wasted: the reporter wants to record.
        if (s_.desktop.StartMicrophoneGainTool(options_.gainToolMode)) return;
    }
    SetTransportState(TransportState::kRecordReady);
    if (s_.recorder.WavStartRecording(s_.player.IsActive()) != 0) {
        SetTransportState(TransportState::kStopped);
        return;
    }
    if (options_.closeSynchronisation) s_.desktop.CloseSynchronisation();
}

void Transport::Play(bool lit) {
    if (!lit) return;
    if (state_ == TransportState::kRecordReady) {
        SetTransportState(TransportState::kRecording);
        s_.recorder.WavStartRecordSaving();
        return;
    }
    if (IsCapturing()) return;
    if (s_.player.IsPlaying()) {
        s_.player.SetRange(RangeAt(s_.recording.cursor));
        SetTransportState(TransportState::kPlaying);
    } else if (s_.recording.cursor < s_.recording.length) {
        PlayFromCursor();
    }
}

void Transport::PlayFromCursor() {
    const std::uint16_t channels = ChannelsOf(s_.readers, s_.recording.audioPath);
    if (channels == 0) return;
    const std::uint32_t place = PlaceToPlayFrom();
    (void)Start(TransportState::kPlaying, place, RangeAt(place), channels);
}

// At the current cut, its edges included, one wants to hear how its ends fit: a second before it
// comes first.
std::uint32_t Transport::PlaceToPlayFrom() {
    const std::uint32_t cursor = s_.recording.cursor;
    const RemovedRange* const cut = s_.recording.CurrentCut();
    if (cut == nullptr || cursor < cut->begin || cursor > cut->end) {
        if (std::exchange(s_.recording.currentCut, -1) != -1) s_.listener.OnCutChosen(-1);
        return cursor;
    }
    const std::uint32_t begin = cut->begin;
    const std::uint32_t second = s_.readers.audio.PeriodsPerSecond();
    const std::uint32_t selection = s_.recording.selectionStart;
    const std::uint32_t earliest = selection <= cursor ? selection : 0;
    return std::max(begin - std::min(begin, second), earliest);
}

// Within the selection playing ends with it, so that one hears where; outside it, with the
// recording.
PeriodRange Transport::RangeAt(std::uint32_t position) const {
    const PeriodRange selection{s_.recording.selectionStart, s_.recording.selectionEnd};
    const bool inside = selection.begin <= position && position < selection.end;
    return inside ? selection : PeriodRange{};
}

bool Transport::PlayRange(PeriodRange range, std::uint16_t channels) {
    return Start(TransportState::kPlaying, range.begin, range, channels);
}

bool Transport::Start(TransportState state, std::uint32_t position, PeriodRange range,
                      std::uint16_t channels) {
    // The player refuses, and says so.
    if (IsCapturing() || s_.player.IsPlaying())
        return s_.player.StartPlaying(channels, s_.recorder.IsActive());
    // Left open by a refused start, or on its way to be closed: no take is in it.
    s_.recorder.WavCloseRecording();
    s_.player.SetRange(range);
    s_.player.WavRestartPlaying(static_cast<std::int32_t>(position));
    s_.recording.cursor = position;
    last_ = {s_.recording.audioPath, position, position};
    // An external recorder has a volume of its own; the samples reach it as they are.
    if (!s_.readers.audio.externalRecorder) s_.input.SetOutputVolume(0);
    SetTransportState(state);
    if (s_.player.StartPlaying(channels)) return true;
    SetTransportState(TransportState::kStopped);
    return false;
}

void Transport::Stop(bool lit) {
    const bool stopped = state_ == TransportState::kStopped;
    if (lit == stopped) return;
    if (stopped) {
        GoToStopPlace();
        return;
    }
    if (state_ == TransportState::kRecordReady || state_ == TransportState::kRecording) {
        s_.recorder.WavStopRecording();
        SetTransportState(TransportState::kStopped);
        return;
    }
    s_.player.WavExitPlaying();
    // A player that only drained does not tell that it was stopped.
    if (state_ != TransportState::kStopped) PlayingEnded(s_.recording.cursor);
}

void Transport::GoToStopPlace() {
    if (last_.path != s_.recording.audioPath) last_ = {};
    const std::uint32_t place = stopGoesToEnd_ ? last_.end : last_.begin;
    stopGoesToEnd_ = !stopGoesToEnd_;
    MoveTo(static_cast<std::int32_t>(place));
}

void Transport::MoveTo(std::int32_t position) {
    if (IsCapturing()) return;
    // Picked while something plays, a place has the end that it would have had from the start.
    if (state_ == TransportState::kPlaying || state_ == TransportState::kDragging)
        s_.player.SetRange(RangeAt(static_cast<std::uint32_t>(std::max(position, 0))));
    Place(position);
}

void Transport::Drag(bool on) {
    const TransportState from = on ? TransportState::kPlaying : TransportState::kDragging;
    const TransportState to = on ? TransportState::kDragging : TransportState::kPlaying;
    if (state_ == from) SetTransportState(to);
}

// The player tells no place outside the recording; the screens follow to its ends all the same.
void Transport::Place(std::int32_t position) {
    s_.player.WavRestartPlaying(position);
    const std::uint32_t place = s_.player.DisplayPosition();
    if (s_.recording.cursor != place) OnPosition(place, kQuietLevel);
}

bool Transport::Edit(const EditOperation& operation) {
    if (IsCapturing() || s_.recording.length == 0) return false;
    const std::uint32_t before = s_.recording.cursor;
    (void)operation(s_.project);  // a failure is reported, and what is shown is true
    if (s_.recording.cursor != before) MoveTo(static_cast<std::int32_t>(s_.recording.cursor));
    return true;
}

void Transport::Wind(TransportState direction, bool lit) {
    if (!lit || IsCapturing()) return;
    const bool forward = direction == TransportState::kFastForward;
    if (s_.player.IsPlaying()) {
        SetTransportState(direction);
        return;
    }
    if (state_ == TransportState::kStopped) {
        if (const auto move = NudgeAtCursor(s_.recording, forward)) {
            Nudge(*move);
            return;
        }
    }
    WindFromCursor(direction);
}

void Transport::WindFromCursor(TransportState direction) {
    const std::uint32_t length = s_.recording.length;
    const std::uint32_t place = s_.recording.cursor;
    const bool forward = direction == TransportState::kFastForward;
    if (length == 0 || (forward ? place >= length : place == 0)) return;
    const std::uint16_t channels = ChannelsOf(s_.readers, s_.recording.audioPath);
    if (channels != 0) (void)Start(direction, place, {}, channels);
}

void Transport::Nudge(const EdgeMove& move) {
    if (move.to == move.from) return;
    if (MoveEdge(s_.project, move)) s_.listener.OnEdgeMoved(move);
}

void Transport::GoToMark(bool forward) {
    if (state_ != TransportState::kStopped || s_.recording.length == 0) return;
    const auto place = forward ? PlaceBehind(s_.recording, s_.recording.cursor)
                               : PlaceBefore(s_.recording, s_.recording.cursor);
    if (place) MoveTo(static_cast<std::int32_t>(*place));
}

void Transport::OnMark(std::uint32_t number) {
    s_.listener.OnMark(number);
    s_.listener.OnMarkText(FormatText("  Mark %3d ", static_cast<int>(number)),
                           s_.readers.audio.PeriodsPerSecond());
}

// The places of the last playing stay: whoever only tried the microphone still wants to go back to
// them. Behind a take they are of another recording, and forgotten for that.
void Transport::OnStopped() {
    stopGoesToEnd_ = false;
    s_.player.SetRange({});
    SetTransportState(TransportState::kStopped);
    s_.listener.OnStopped();
}

void Transport::OnPosition(std::uint32_t heard, std::uint8_t level) {
    s_.recording.cursor = heard;
    s_.listener.OnPosition(heard, level);
}

void Transport::OnPlaceMoved(std::uint32_t position) {
    s_.recording.cursor = position;
    s_.listener.OnPlaceMoved(position);
}

void Transport::OnPlaying(bool playing) {
    if (!playing) PlayingEnded(s_.recording.cursor);
    s_.listener.OnPlaying(playing);
}

void Transport::PlayingEnded(std::uint32_t position) {
    // A list has gone on to another recording: there is its last range to go back to.
    if (last_.path != s_.recording.audioPath)
        last_ = {s_.recording.audioPath, s_.player.Range().begin, 0};
    last_.end = position;
    stopGoesToEnd_ = false;
    SetTransportState(TransportState::kStopped);
}

// The screens lag behind what was written, and a cut at the end leaves the player beyond it: the
// place becomes the end that was reached.
void Transport::OnPlayedOut() {
    const auto end = static_cast<std::int32_t>(s_.player.End());
    Place(std::min(s_.player.Position(), end));
    PlayingEnded(s_.recording.cursor);
    s_.listener.OnPlayedOut();
}

void Transport::OnOutputLost(WaveLoss reason) {
    PlayingEnded(s_.recording.cursor);
    s_.listener.OnOutputLost(reason);
}

}  // namespace orma
