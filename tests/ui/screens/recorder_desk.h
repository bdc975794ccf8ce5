#pragma once

#include <optional>

#include "platform/system_status.h"
#include "transport/desktop.h"
#include "ui/screens/fake_host.h"
#include "ui/screens/record_w_win.h"
#include "ui/support/screen_rig.h"

namespace orma::test {

/// The table's places by name.
enum Place : std::size_t {
    kStop,
    kPlay,
    kRecord,
    kRewind,
    kFastForward,
    kVu,
    kTime,
    kLamp,
    kName,
    kMaxTime,
    kBattery,
    kGainText,
    kGainKnob,
    kVolumeText,
    kVolumeKnob,
    kBackMark,
    kForwardMark,
    kWarning,
};

inline constexpr RecorderScreenOptions kEverything{.showMaxTime = true,
                                                   .showBattery = true,
                                                   .markButtons = true,
                                                   .gainControl = true,
                                                   .volumeControl = true};

/// An external recorder that answers to everything and has one level.
class OutsideRecorder : public ExternalRecorder {
  public:
    [[nodiscard]] std::vector<Text> OutputNames() override { return {u"speakers", u"MAYCOM 1"}; }
    [[nodiscard]] WaveResult Query(std::uint32_t, const WaveFormat&, std::uint32_t, RecorderMessage,
                                   std::span<std::uint8_t>) override {
        return WaveResult::kOk;
    }
    [[nodiscard]] WaveResult Send(RecorderLine, std::uint32_t, RecorderMessage subCode,
                                  std::span<std::uint8_t> parameter) override {
        if (subCode == RecorderMessage::kValue) StoreLe(parameter.data(), level);
        return WaveResult::kOk;
    }

    std::uint32_t level = 0;  // a channel in each half
};

/// The recorder screen on a whole application, as the shell puts it there: it hears everything.
class RecorderDesk : public Desktop, public SystemStatus {
  public:
    explicit RecorderDesk(const RecorderScreenOptions& options = kEverything,
                          bool upsideDown = false, bool external = false,
                          const std::string& layout = {})
        : rig({.upsideDown = upsideDown, .layout = layout}),
          outside(external ? &device : nullptr, app.report) {
        InputProcessingSettings input;
        input.inputGainDb = 12;
        input.outputStep = 14;
        app.input.Load(input, 44100);
        (void)outside.FindExternalRecorder();
        outside.LineOpened(RecorderLine::kInput);
        screen.emplace(rig.scene, host,
                       RecorderScreenServices{app.transport, app.recorder, app.recording, app.audio,
                                              app.input, outside, *this},
                       options);
        screen->Entered();
        screen->Paint();
    }

    [[nodiscard]] Win* At(Place place) { return screen->Controls().at(place).get(); }
    [[nodiscard]] std::string ValueAt(Place place) {
        return At(place) != nullptr ? ToUtf8(At(place)->Value()) : "none";
    }

    /// The lit ones of Stop, Play, Record, Rewind, FastForward by their letters.
    [[nodiscard]] std::string LitButtonsShown() {
        std::string letters;
        for (const Place place : {kStop, kPlay, kRecord, kRewind, kFastForward})
            if (At(place)->IsOn()) letters += "SPR<>"[place];
        return letters;
    }

    /// Lets the microphone hear `periods` of one sample value.
    void Hear(int periods, std::int16_t sample) {
        for (int i = 0; i < periods; ++i) {
            app.input.ClearState();  // else the DC blocker would take a constant away
            (void)waves.in.DeliverValue(sample);
        }
    }

    std::optional<int> BatteryPercent() override { return battery; }
    std::optional<std::uint64_t> FreeMemory() override { return std::nullopt; }
    std::optional<int> ProcessorLoad() override { return std::nullopt; }

    void OnTransportState(TransportState state, const LitButtons& buttons) override {
        Desktop::OnTransportState(state, buttons);
        screen->OnTransportState(state, buttons);
    }
    void OnMarkText(const Text& text, std::uint32_t periods) override {
        screen->OnMarkText(text, periods);
    }
    void OnLevel(std::uint8_t level) override { screen->OnLevel(level); }
    void OnSavingStarted() override { screen->OnSavingStarted(); }
    void OnSavedPeriods(std::uint32_t count) override { screen->OnSavedPeriods(count); }
    void OnTimeLeftChanged() override { screen->OnTimeLeftChanged(); }
    void OnClosed() override { screen->OnClosed(); }
    void OnInputLost(WaveLoss reason) override { screen->OnInputLost(reason); }
    void OnPosition(std::uint32_t heard, std::uint8_t level) override {
        screen->OnPosition(heard, level);
    }
    void OnPlaceMoved(std::uint32_t position) override { screen->OnPlaceMoved(position); }
    void OnOutputLost(WaveLoss reason) override { screen->OnOutputLost(reason); }

    ScreenRig rig;
    FakeHost host;
    OutsideRecorder device;
    ExternalRecorderControl outside;
    std::optional<int> battery = 83;
    std::optional<RecordWWin> screen;
};

}  // namespace orma::test
