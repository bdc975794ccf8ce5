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
            meter_->VuUpdate(*level);
            if (IsCapture(s_.transport.State()) && *level == 0) HearInput(*level);
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
    if (state == TransportState::kStopped) meter_->VuInit();
    if (IsEntered()) Host().UpdateMenus();
}

void RecordWWin::ShowState() {
    Light(ButtonsOf(s_.transport.State()));
    lamp_->SetState(static_cast<int>(s_.transport.State()));
}

void RecordWWin::OnMarkText(const Text& text, std::uint32_t periods) {
    markPeriods_ = periods;
    time_->ShowText(text);
}

void RecordWWin::OnLevel(std::uint8_t level) {
    meter_->VuUpdate(level);
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
    if (!IsReady() && !IsCapture(s_.transport.State())) meter_->VuUpdate(level);
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
    if (!line.empty() && maxTime_ != nullptr) maxTime_->SetText({});
    warning_->SetText(warning_->Fits(line) ? line : warnings_.ShortLine());
    if (line.empty() && maxTime_ != nullptr && maxTime_->Value().empty()) ShowMaxTime();
}

void RecordWWin::ShowName() {
    name_->SetName(s_.recording.ShownName());
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
    maxTime_->SetText(FormatText("%.2dh:%.2dm max", static_cast<int>(minutes / 60),
                                 static_cast<int>(minutes % 60)));
}

void RecordWWin::ShowBattery() {
    if (battery_ == nullptr) return;
    const auto percent = s_.system.BatteryPercent();
    battery_->SetText(percent ? FormatText("Battery: %d%%", *percent) : Text{});
}

void RecordWWin::ShowGain() {
    if (gainKnob_ == nullptr) return;
    if (external_) {
        gainText_->SetText(s_.externalRecorder.GainText());
        gainKnob_->KnobSetValue(static_cast<std::int32_t>(s_.externalRecorder.GainBar()));
        return;
    }
    const std::int32_t gain = s_.input.InputGainDb();
    gainText_->SetText(FormatText("%+2ddB", gain));
    gainKnob_->KnobSetValue(gain * kKnobEnd / kMostGainDb);
}

void RecordWWin::ShowVolume() {
    if (volumeKnob_ == nullptr) return;
    if (external_) {
        volumeText_->SetText(s_.externalRecorder.VolumeText());
        volumeKnob_->KnobSetValue(static_cast<std::int32_t>(s_.externalRecorder.VolumeBar()));
        return;
    }
    const auto step = static_cast<std::int32_t>(s_.input.OutputStep());
    volumeText_->SetText(FormatText("  %+2.0fdB", static_cast<double>(step - kFullVolumeStep)));
    volumeKnob_->KnobSetValue(step * kKnobEnd / kVolumeScale);
}

}  // namespace orma
