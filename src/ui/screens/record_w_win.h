#pragma once

#include <cstdint>

#include "audio/engine/external_recorder_control.h"
#include "audio/engine/input_processing.h"
#include "audio/engine/recorder.h"
#include "platform/system_status.h"
#include "project/current_recording.h"
#include "transport/transport.h"
#include "ui/controls/name_win.h"
#include "ui/controls/rec_status_win.h"
#include "ui/controls/rec_time_win.h"
#include "ui/controls/stripe_win.h"
#include "ui/controls/vu_win.h"
#include "ui/screens/external_level.h"
#include "ui/screens/input_warnings.h"
#include "ui/screens/transport_w_win.h"
#include "ui/screens/warning_win.h"

namespace orma {

/// What the recorder screen shows, from the settings and the machine.
struct RecorderScreenOptions {
    bool showMaxTime = false;
    bool showBattery = false;
    bool markButtons = false;
    bool gainControl = false;    // of the input
    bool volumeControl = false;  // of the output
    bool spdif = false;          // the input is the digital card
};

/// What the screen works and shows; all outlive it.
struct RecorderScreenServices {
    Transport& transport;
    Recorder& recorder;
    const CurrentRecording& recording;
    const AudioState& audio;
    InputProcessing& input;
    ExternalRecorderControl& externalRecorder;
    SystemStatus& system;
};

/// The recorder: the buttons of a tape recorder, level meter, running time, gain and volume. What a
/// button means is the transport's; the screen forwards to it and shows what it tells. It is also
/// the one who warns of the input, whichever screen is shown. With a skin that is upside down the
/// recorder is held so: texts, meter and arrow keys are turned. Whether an external recorder is
/// attached is settled when the screen is made. UI thread.
class RecordWWin : public TransportWWin {
  public:
    RecordWWin(const Scene& scene, ScreenHost& host, const RecorderScreenServices& services,
               const RecorderScreenOptions& options);

    /// Nothing is captured, played or wound: recording may start.
    [[nodiscard]] bool IsReady() const { return s_.transport.State() == TransportState::kStopped; }

    /// Turned by a knob or an arrow key; `steps` of the control's own.
    void TurnGain(int steps);
    void TurnVolume(int steps);

    void Tick() override;

    /// Also when settings have changed.
    void Refresh() override;
    void Entered() override;
    void Left() override;

    // TransportListener
    void OnTransportState(TransportState state, const LitButtons& lit) override;
    void OnMarkText(const Text& text, std::uint32_t periods) override;
    void OnLevel(std::uint8_t level) override;
    void OnSavingStarted() override;
    void OnSavedPeriods(std::uint32_t count) override;
    void OnTimeLeftChanged() override;
    void OnClosed() override;
    void OnInputLost(WaveLoss reason) override;
    void OnPosition(std::uint32_t heard, std::uint8_t level) override;
    void OnPlaceMoved(std::uint32_t position) override;
    void OnOutputLost(WaveLoss reason) override;

  private:
    /// The machine says so every ten seconds at the usual timer of 20 ms.
    static constexpr std::uint32_t kTicksOfStatus = 500;

    // record_w_win.cpp
    void ShowState();
    void ShowTime();
    void ShowName();
    void ShowMaxTime();
    void ShowBattery();
    void ShowGain();
    void ShowVolume();
    void ShowWarning(bool isNew);
    void Acknowledge();
    void HearInput(std::uint8_t level);

    // record_w_win_table.cpp
    void BindKeys();
    void MakeDisplay();
    void MakeGain();
    void MakeVolume();
    void MakeWarning();
    [[nodiscard]] StaticTextWin* AddText(bool shown, Element element, SkinFont font,
                                         const char16_t* name, const char16_t* hint);

    RecorderScreenServices s_;
    RecorderScreenOptions options_;
    bool turned_;
    bool external_;  // an external recorder is attached
    ExternalLevel externalLevel_;
    InputWarnings warnings_;
    std::uint32_t saved_ = 0;        // periods of the take that runs
    std::uint32_t markPeriods_ = 0;  // for which the mark's text still stands
    std::uint32_t ticks_ = 0;

    // Of the table; null: switched off.
    VuWin* meter_ = nullptr;
    RecTimeWin* time_ = nullptr;
    RecStatusWin* lamp_ = nullptr;
    NameWin* name_ = nullptr;
    StaticTextWin* maxTime_ = nullptr;
    StaticTextWin* battery_ = nullptr;
    StaticTextWin* gainText_ = nullptr;
    StripeWin* gainKnob_ = nullptr;
    StaticTextWin* volumeText_ = nullptr;
    StripeWin* volumeKnob_ = nullptr;
    WarningWin* warning_ = nullptr;
};

}  // namespace orma
