#include "ui/screens/record_w_win.h"

namespace orma {
namespace {

constexpr std::int32_t kKnobEnd = 65536;
constexpr std::int32_t kMostGainDb = 40;

// The volume's knob shares the gain's scale, so that 0 dB stands in its middle.
constexpr std::int32_t kVolumeScale = 40;
constexpr int kFullVolumeStep = 20;

bool IsCapture(TransportState state) {
    return state == TransportState::kRecordReady || state == TransportState::kRecording;
}

}  // namespace

void RecordWWin::TurnGain(int steps) {
    if (!options_.gainControl) return;
    if (external_)
        s_.externalRecorder.SetRecorderGain(2 * steps);  // its codes are half decibels
    else
        s_.input.SetInputGain(steps);
    ShowGain();
}

void RecordWWin::TurnVolume(int steps) {
    if (external_)
        s_.externalRecorder.SetRecorderVolume(steps);
    else
        s_.input.SetOutputVolume(steps);
    ShowVolume();
}

void RecordWWin::Tick() {
    if (external_ && !s_.recorder.IsClosed()) {
        if (const auto level = externalLevel_.Read(s_.externalRecorder, s_.audio.stereo)) {
            ShowLevel(*level);
            if (IsCapture(s_.transport.State()) && *level == 0)
                ShowWarning(warnings_.Hear(*level, s_.audio.PeriodsPerSecond()));
        }
    }
    ShowName();
    ShowTime();
    if (++ticks_ % kTicksOfStatus != 0) return;
    ShowMaxTime();
    ShowBattery();
}

void RecordWWin::Entered() {
    Refresh();
    WWin::Entered();
    ShowTime();
}

void RecordWWin::Left() {
    WWin::Left();
    Host().UpdateMenus();
}

void RecordWWin::Refresh() {
    meter_->SetResolutionShift(s_.audio.resolutionShift);
    ShowState();
    ShowName();
    ShowTime();
    ShowMaxTime();
    ShowBattery();
    ShowGain();
    ShowVolume();
    ShowWarning(false);
}

void RecordWWin::OnTransportState(TransportState state, const LitButtons& /*lit*/) {
    saved_ = 0;
    markPeriods_ = 0;
    externalLevel_.Rest();
    meter_->SetResolutionShift(s_.audio.resolutionShift);
    if (!IsCapture(state)) warnings_.CaptureEnded();
    if (state == TransportState::kRecordReady) warnings_.Acknowledge();
    if (state == TransportState::kPlaying) warnings_.PlayingBegins();
    ShowState();
    ShowWarning(false);
    ShowTime();
    if (state == TransportState::kStopped) RestMeter();
    if (IsEntered()) Host().UpdateMenus();
}

void RecordWWin::ShowState() {
    Light(ButtonsOf(s_.transport.State()));
    const int state = static_cast<int>(s_.transport.State());
    if (IsEntered())
        lamp_->SetState(state);
    else
        lamp_->PresetState(state);
}

void RecordWWin::OnMarkText(const Text& text, std::uint32_t periods) {
    markPeriods_ = periods;
    if (IsEntered()) time_->ShowText(text);
}

void RecordWWin::OnLevel(std::uint8_t level) {
    ShowLevel(level);
    HearInput(level);
}

void RecordWWin::OnSavingStarted() {
    warnings_.TakeBegins(s_.recorder.LostFrames());
    ShowWarning(false);
}

void RecordWWin::OnSavedPeriods(std::uint32_t count) {
    saved_ = count;
    if (markPeriods_ > 0) --markPeriods_;
    ShowTime();
    ShowWarning(warnings_.FramesLost(s_.recorder.LostFrames()));
}

void RecordWWin::OnTimeLeftChanged() {
    ShowMaxTime();
    ShowBattery();
}

void RecordWWin::OnClosed() {
    ShowName();
    ShowTime();
    ShowMaxTime();  // of what the take has left, its files written
}

void RecordWWin::OnPosition(std::uint32_t /*heard*/, std::uint8_t level) {
    if (!IsReady() && !IsCapture(s_.transport.State())) ShowLevel(level);
    ShowTime();
}

void RecordWWin::OnPlaceMoved(std::uint32_t /*position*/) {
    ShowName();
    ShowTime();
}

void RecordWWin::OnInputLost(WaveLoss reason) {
    ShowWarning(warnings_.InputLost(reason));
}

void RecordWWin::OnOutputLost(WaveLoss reason) {
    ShowWarning(warnings_.OutputLost(reason));
}

void RecordWWin::HearInput(std::uint8_t level) {
    ShowWarning(warnings_.Hear(level, s_.audio.PeriodsPerSecond()));
}

void RecordWWin::Acknowledge() {
    warnings_.Acknowledge();
    ShowWarning(false);
}

// Told aloud also behind another screen: a take may be in danger.
void RecordWWin::ShowWarning(bool isNew) {
    const Text line = warnings_.Line();
    if (isNew && !line.empty()) Host().Announce(line);
    if (!line.empty()) Put(maxTime_, {});
    Put(warning_, warning_->Fits(line) ? line : warnings_.ShortLine());
    if (line.empty() && maxTime_ != nullptr && maxTime_->Value().empty()) ShowMaxTime();
}

void RecordWWin::ShowLevel(std::uint8_t level) {
    if (IsEntered())
        meter_->VuUpdate(level);
    else
        meter_->Follow(level);
}

void RecordWWin::RestMeter() {
    if (IsEntered())
        meter_->VuInit();
    else
        meter_->PresetInit();
}

void RecordWWin::ShowName() {
    const Text& name = s_.recording.title.empty() ? s_.recording.name : s_.recording.title;
    if (IsEntered())
        name_->SetName(name);
    else
        name_->PresetName(name);
}

// In the built-in layout the running time covers the upper rows of the lamp.
void RecordWWin::ShowTime() {
    if (!IsEntered() || markPeriods_ > 0) return;
    const bool recording = s_.transport.State() == TransportState::kRecording;
    const Text before = time_->Value();
    time_->ShowPeriods(recording ? saved_ : s_.recording.cursor, s_.audio.PeriodsPerSecond());
    if (time_->Value() != before && !Common(time_->Bounds(), lamp_->Bounds()).IsEmpty())
        lamp_->Paint();
}

void RecordWWin::ShowMaxTime() {
    if (maxTime_ == nullptr || !warnings_.Line().empty()) return;
    const std::uint32_t minutes = s_.recorder.RecordingTimeLeft() / 60;
    Put(maxTime_, FormatText("%.2dh:%.2dm max", static_cast<int>(minutes / 60),
                             static_cast<int>(minutes % 60)));
}

void RecordWWin::ShowBattery() {
    if (battery_ == nullptr) return;
    const auto percent = s_.system.BatteryPercent();
    Put(battery_, percent ? FormatText("Battery: %d%%", *percent) : Text{});
}

void RecordWWin::ShowGain() {
    if (external_) {
        Put(gainText_, s_.externalRecorder.GainText());
        Put(gainKnob_, s_.externalRecorder.GainBar());
        return;
    }
    const std::int32_t gain = s_.input.InputGainDb();
    Put(gainText_, FormatText("%+2ddB", gain));
    Put(gainKnob_, static_cast<std::uint32_t>(gain * kKnobEnd / kMostGainDb));
}

void RecordWWin::ShowVolume() {
    if (external_) {
        Put(volumeText_, s_.externalRecorder.VolumeText());
        Put(volumeKnob_, s_.externalRecorder.VolumeBar());
        return;
    }
    const auto step = static_cast<int>(s_.input.OutputStep());
    Put(volumeText_, FormatText("  %+2.0fdB", static_cast<double>(step - kFullVolumeStep)));
    Put(volumeKnob_, static_cast<std::uint32_t>(step * kKnobEnd / kVolumeScale));
}

void RecordWWin::Put(StaticTextWin* control, const Text& text) const {
    if (control == nullptr) return;
    if (IsEntered())
        control->SetText(text);
    else
        control->PresetText(text);
}

void RecordWWin::Put(StripeWin* knob, std::uint32_t value) const {
    if (knob == nullptr) return;
    if (IsEntered())
        knob->KnobSetValue(static_cast<std::int32_t>(value));
    else
        knob->PresetValue(static_cast<std::int32_t>(value));
}

}  // namespace orma
