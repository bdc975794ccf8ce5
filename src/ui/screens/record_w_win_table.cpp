// The recorder's table of controls, made once, in its order.

#include <memory>

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
    : WWin(ScreenIndex::kRecorder, HeldAs(scene), host),
      s_(services),
      options_(options),
      turned_(scene.skin.UpsideDown()),
      external_(services.externalRecorder.IsPresent()),
      warnings_(options.spdif) {
    MakeButtons();
    MakeDisplay();
    MakeGain();
    MakeVolume();
    MakeMarkButtons();
    MakeWarning();
    RecordWWin::Refresh();
}

// Upside down, the arrows are the only keys there are.
Text RecordWWin::Shortcut(const char16_t* digit) const {
    return turned_ ? Text{} : Text{digit};
}

void RecordWWin::MakeButtons() {
    struct Button {
        Element element;
        ToggleButtonWin* RecordWWin::*place;
        void (*press)(Transport& transport, bool lit);
        const char16_t* name;
        const char16_t* hint;
        const char16_t* digit;
    };
    const Button buttons[] = {
        {Element::Stop, &RecordWWin::stop_,
         [](Transport& transport, bool lit) { transport.Stop(lit); }, u"Stop",
         u"Stop; when stopped, go to where playing began or ended", u"7"},
        {Element::Play, &RecordWWin::play_,
         [](Transport& transport, bool lit) { transport.Play(lit); }, u"Play",
         u"Play; when the recorder is ready, start recording", u"8"},
        {Element::Record, &RecordWWin::record_,
         [](Transport& transport, bool lit) { transport.Record(lit); }, u"Record",
         u"Get ready to record; while recording, set a mark", u"9"},
        {Element::Rewind, &RecordWWin::rewind_,
         [](Transport& transport, bool lit) { transport.Rewind(lit); }, u"Rewind",
         u"Wind back; on an edge of a cut or selection, move the edge back", u"2"},
        {Element::FastForward, &RecordWWin::fastForward_,
         [](Transport& transport, bool lit) { transport.FastForward(lit); }, u"Fast forward",
         u"Wind ahead; on an edge of a cut or selection, move the edge ahead", u"5"},
    };
    for (const Button& button : buttons) {
        const auto press = button.press;
        auto control = std::make_unique<ToggleButtonWin>(
            OwnScene(), button.element, [this, press](bool lit) { press(s_.transport, lit); });
        control->SetLabel({ControlRole::kToggle, button.name, button.hint, Shortcut(button.digit)});
        this->*button.place = Add(std::move(control));
    }
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
        external_ ? Element::CFACGainKnobMiddle : Element::GainKnobMiddle,
        [this](int steps) { TurnGain(steps); }));
    gainKnob_->SetLabel({ControlRole::kKnob, u"Microphone gain",
                         u"Turn up for a quiet voice, down when it says too loud", u"Up, Down"});
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
                                                  Element::CFACVolKnobMiddle,
                                                  [this](int steps) { TurnVolume(steps); }));
    const bool byArrows = external_ || !options_.markButtons;
    volumeKnob_->SetLabel({ControlRole::kKnob, u"Volume",
                           u"Loudness of the loudspeaker or headphones; recordings do not change",
                           byArrows ? u"Left, Right" : u""});
}

void RecordWWin::MakeMarkButtons() {
    struct Button {
        Element element;
        void (*press)(Transport& transport);
        const char16_t* name;
        const char16_t* hint;
        const char16_t* digit;
    };
    const Button buttons[] = {
        {Element::BackMark, [](Transport& transport) { transport.BackMark(); }, u"Previous mark",
         u"Go back to the mark before, or to the beginning", u"1"},
        {Element::ForwardMark, [](Transport& transport) { transport.ForwardMark(); }, u"Next mark",
         u"Go ahead to the next mark, or to the end", u"3"},
    };
    for (const Button& button : buttons) {
        if (!options_.markButtons) {
            Add(std::unique_ptr<PushButtonWin>());
            continue;
        }
        const auto press = button.press;
        PushButtonWin* const control = Add(std::make_unique<PushButtonWin>(
            OwnScene(), button.element, [this, press] { press(s_.transport); }));
        control->SetLabel({ControlRole::kButton, button.name, button.hint, Shortcut(button.digit)});
    }
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
