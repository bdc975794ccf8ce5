// The recorder's table of controls, made once, in its order.

#include <memory>

#include "ui/controls/push_button_win.h"
#include "ui/screens/record_w_win.h"

namespace orma {
namespace {

Scene HeldAs(const Scene& scene) {
    const auto page = [&](int number) { return scene.skin.ForRecorder(number); };
    return {scene.skin,
            scene.canvas,
            scene.pointer,
            {page(scene.pages.normal), page(scene.pages.pressed)}};
}

}  // namespace

RecordWWin::RecordWWin(const Scene& scene, ScreenHost& host, const RecorderScreenServices& services,
                       const RecorderScreenOptions& options)
    : TransportWWin(ScreenIndex::kRecorder, HeldAs(scene), host, services.transport),
      s_(services),
      options_(options),
      turned_(scene.skin.UpsideDown()),
      external_(services.externalRecorder.IsPresent()),
      warnings_(options.spdif) {
    MakeTransportButtons(
        {Element::Stop, Element::Play, Element::Record, Element::Rewind, Element::FastForward},
        !turned_);
    MakeDisplay();
    MakeGain();
    MakeVolume();
    if (options_.markButtons) {
        MakeMarkButtons(Element::BackMark, Element::ForwardMark, !turned_);
    } else {
        Add(std::unique_ptr<PushButtonWin>());
        Add(std::unique_ptr<PushButtonWin>());
    }
    MakeWarning();
    BindKeys();
    RecordWWin::Refresh();
}

// Held upside down, the recorder has its arrow keys alone, and they are turned with it.
void RecordWWin::BindKeys() {
    const bool marks = options_.markButtons;
    if (!turned_) {
        BindTransportKeys();
        if (marks) BindMarkKeys(Key::k1, Key::k3);
    }
    const Key left = turned_ ? Key::kRight : Key::kLeft;
    const Key right = turned_ ? Key::kLeft : Key::kRight;
    if (marks && !external_) {
        BindMarkKeys(left, right);
    } else {
        Bind(left, u"Volume down", [this] { TurnVolume(-1); });
        Bind(right, u"Volume up", [this] { TurnVolume(1); });
    }
    if (!options_.gainControl) return;
    Bind(turned_ ? Key::kDown : Key::kUp, u"Microphone gain up", [this] { TurnGain(1); });
    Bind(turned_ ? Key::kUp : Key::kDown, u"Microphone gain down", [this] { TurnGain(-1); });
}

void RecordWWin::MakeDisplay() {
    const Skin& skin = OwnScene().skin;
    meter_ =
        Add(std::make_unique<VuWin>(OwnScene(), Element::VU, s_.audio.resolutionShift, turned_));
    meter_->SetLabel(
        {ControlRole::kMeter, u"Level", u"How loud it is, in dB below full level", {}});
    time_ = Add(std::make_unique<RecTimeWin>(OwnScene(), Element::RecTime,
                                             skin.FontOf(SkinFont::kTime, turned_)));
    time_->SetLabel({ControlRole::kText, u"Time", u"How far into the recording you are", {}});
    lamp_ = Add(std::make_unique<RecStatusWin>(OwnScene(), Element::RecStatus));
    lamp_->SetLabel({ControlRole::kLamp, u"Status", u"What the recorder is doing", {}});
    name_ = Add(std::make_unique<NameWin>(OwnScene(), Element::Name,
                                          skin.FontOf(SkinFont::kName, turned_)));
    name_->SetLabel({ControlRole::kText, u"Name", u"The recording that is played and edited", {}});
    maxTime_ = AddText(options_.showMaxTime, Element::MaxTime, SkinFont::kText, u"Time left",
                       u"How much can still be recorded");
    battery_ = AddText(options_.showBattery, Element::Battery, SkinFont::kText, u"Battery",
                       u"Charge of this machine's battery");
}

void RecordWWin::MakeGain() {
    const bool shown = external_ || options_.gainControl;
    gainText_ = AddText(shown, Element::CFACGainText, SkinFont::kLabel, u"Microphone gain",
                        u"How much the input is amplified");
    if (!shown) {
        Add(std::unique_ptr<StripeWin>());
        return;
    }
    gainKnob_ = Add(std::make_unique<StripeWin>(
        OwnScene(), external_ ? Element::CFACGainKnob : Element::GainKnob,
        external_ ? Element::CFACGainKnobMiddle : Element::GainKnobMiddle, Element::GainCaption,
        [this](int steps) { TurnGain(steps); }));
    gainKnob_->SetLabel({ControlRole::kKnob, u"Microphone gain",
                         u"Turn up for a quiet voice, down when it says too loud",
                         options_.gainControl ? u"Up, Down" : u""});
}

void RecordWWin::MakeVolume() {
    const bool shown = external_ || options_.volumeControl;
    volumeText_ = AddText(shown, Element::CFACVolText, SkinFont::kLabel, u"Volume",
                          u"How loud recordings are played");
    if (!shown) {
        Add(std::unique_ptr<StripeWin>());
        return;
    }
    volumeKnob_ = Add(std::make_unique<StripeWin>(OwnScene(), Element::CFACVolKnob,
                                                  Element::CFACVolKnobMiddle, Element::VolCaption,
                                                  [this](int steps) { TurnVolume(steps); }));
    const bool byArrows = external_ || !options_.markButtons;
    volumeKnob_->SetLabel({ControlRole::kKnob, u"Volume",
                           u"Loudness of the loudspeaker or headphones; recordings do not change",
                           byArrows ? u"Left, Right" : u""});
}

// In the line of the time that is left: the display has no other free one in every layout.
void RecordWWin::MakeWarning() {
    const Skin& skin = OwnScene().skin;
    warning_ = Add(std::make_unique<WarningWin>(OwnScene(), skin.RectOf(Element::MaxTime),
                                                skin.FontOf(SkinFont::kText, turned_),
                                                [this] { Acknowledge(); }));
    warning_->SetLabel({ControlRole::kText, u"Warning", u"Click to take it away", {}});
}

StaticTextWin* RecordWWin::AddText(bool shown, Element element, SkinFont font, const char16_t* name,
                                   const char16_t* hint) {
    if (!shown) return Add(std::unique_ptr<StaticTextWin>());
    const Skin& skin = OwnScene().skin;
    StaticTextWin* const control = Add(std::make_unique<StaticTextWin>(
        OwnScene(), skin.RectOf(element), skin.FontOf(font, turned_), TextGround::kPage));
    control->SetLabel({ControlRole::kText, name, hint, {}});
    return control;
}

}  // namespace orma
