#include "ui/screens/transport_w_win.h"

#include <memory>

#include "ui/controls/push_button_win.h"

namespace orma {

void TransportWWin::MakeTransportButtons(const ButtonElements& elements, bool byDigits) {
    struct Button {
        Element element;
        ToggleButtonWin* TransportWWin::*place;
        void (*press)(TransportWWin& screen, bool lit);
        const char16_t* name;
        const char16_t* hint;
        const char16_t* digit;
    };
    const Button buttons[] = {
        {elements.stop, &TransportWWin::stop_,
         [](TransportWWin& screen, bool lit) { screen.transport_.Stop(lit); }, u"Stop",
         u"Stop; when stopped, go to where playing began or ended", u"7"},
        {elements.play, &TransportWWin::play_,
         [](TransportWWin& screen, bool lit) { screen.transport_.Play(lit); }, u"Play",
         u"Play; when the recorder is ready, start recording", u"8"},
        {elements.record, &TransportWWin::record_,
         [](TransportWWin& screen, bool lit) { screen.transport_.Record(lit); }, u"Record",
         u"Get ready to record; while recording, set a mark", u"9"},
        {elements.rewind, &TransportWWin::rewind_,
         [](TransportWWin& screen, bool lit) { screen.transport_.Rewind(lit); }, u"Rewind",
         u"Wind back; on an edge of a cut or selection, move the edge back", u"2"},
        {elements.fastForward, &TransportWWin::fastForward_,
         [](TransportWWin& screen, bool lit) { screen.transport_.FastForward(lit); },
         u"Fast forward", u"Wind ahead; on an edge of a cut or selection, move the edge ahead",
         u"5"},
    };
    for (const Button& button : buttons) {
        const auto press = button.press;
        auto control = std::make_unique<ToggleButtonWin>(
            OwnScene(), button.element, [this, press](bool lit) { press(*this, lit); });
        control->SetLabel({ControlRole::kToggle, button.name, button.hint,
                           byDigits ? Text{button.digit} : Text{}});
        this->*button.place = Add(std::move(control));
    }
}

void TransportWWin::MakeMarkButtons(Element back, Element forward, bool byDigits) {
    const auto add = [&](Element element, void (*press)(Transport&), const char16_t* name,
                         const char16_t* hint, const char16_t* digit) {
        auto* const button = Add(std::make_unique<PushButtonWin>(
            OwnScene(), element, [this, press] { press(transport_); }));
        button->SetLabel({ControlRole::kButton, name, hint, byDigits ? Text{digit} : Text{}});
    };
    add(
        back, [](Transport& transport) { transport.BackMark(); }, u"Previous mark",
        u"Go back to the mark before, or to the beginning", u"1");
    add(
        forward, [](Transport& transport) { transport.ForwardMark(); }, u"Next mark",
        u"Go ahead to the next mark, or to the end", u"3");
}

void TransportWWin::BindTransportKeys() {
    Bind(Key::k9, u"Get ready to record; while recording, set a mark", [this] { PressRecord(); });
    Bind(Key::k8, u"Play; when ready to record, start recording", [this] { PressPlay(); });
    Bind(Key::k7, u"Stop; when stopped, go to where playing began or ended",
         [this] { PressStop(); });
    Bind(Key::kEnter, u"Play, or stop what runs", [this] {
        const TransportState state = transport_.State();
        const bool waits =
            state == TransportState::kStopped || state == TransportState::kRecordReady;
        return waits ? PressPlay() : PressStop();
    });
    Bind(Key::k2, u"Rewind; on an edge, move it back", [this] { PressRewind(); });
    Bind(Key::k5, u"Fast forward; on an edge, move it ahead", [this] { PressFastForward(); });
}

void TransportWWin::BindMarkKeys(Key back, Key forward) {
    Bind(back, u"Previous mark", [this] { transport_.BackMark(); });
    Bind(forward, u"Next mark", [this] { transport_.ForwardMark(); });
}

void TransportWWin::Light(const LitButtons& lit) {
    stop_->SetState(lit.stop);
    play_->SetState(lit.play);
    record_->SetState(lit.record);
    rewind_->SetState(lit.rewind);
    fastForward_->SetState(lit.fastForward);
}

}  // namespace orma
