// The editor's table of controls, made once, in its order.

#include <array>
#include <memory>

#include "ui/controls/push_button_win.h"
#include "ui/screens/editor_w_win.h"

namespace orma {

EditorWWin::EditorWWin(const Scene& scene, ScreenHost& host, const EditorScreenServices& services,
                       bool redrawWholeBar)
    : TransportWWin(ScreenIndex::kEditor, scene, host, services.transport),
      s_(services),
      external_(services.externalRecorder.IsPresent()) {
    MakeTransportButtons({Element::EditStop, Element::EditPlay, Element::EditRecord,
                          Element::EditRewind, Element::EditFastForward},
                         true);
    MakeDisplay();
    MakeGraph(redrawWholeBar);
    MakeSideButtons();
    BindKeys();
    Refresh();
}

void EditorWWin::MakeDisplay() {
    const Skin& skin = OwnScene().skin;
    name_ =
        Add(std::make_unique<NameWin>(OwnScene(), Element::EditName, skin.FontOf(SkinFont::kName)));
    name_->SetLabel({ControlRole::kText, u"Name", u"The recording that is played and edited", {}});
    meter_ =
        Add(std::make_unique<VuWin>(OwnScene(), Element::EditVU, s_.audio.resolutionShift, false));
    meter_->SetLabel(
        {ControlRole::kMeter, u"Level", u"How loud it is, in dB below full level", {}});
    time_ = Add(std::make_unique<RecTimeWin>(OwnScene(), Element::EditRecTime,
                                             skin.FontOf(SkinFont::kLabel)));
    time_->SetLabel({ControlRole::kText, u"Time", u"How far into the recording you are", {}});
}

// The scroll bar stands before its graph in the table, but needs it first.
void EditorWWin::MakeGraph(bool redrawWholeBar) {
    auto graph = std::make_unique<RecGraphWin>(
        OwnScene(), Element::EditRecGraph,
        GraphOwner{[this] { return Source(); }, [this](std::int64_t position) { GoTo(position); },
                   [this] { return s_.transport.IsCapturing(); }, [this] { name_->Paint(); },
                   [this](bool on) { s_.transport.Drag(on); }});
    graph->SetLabel({ControlRole::kGraph, u"Waveform",
                     u"Click to go there; at the upper edge, to the nearest mark", u"Left, Right"});
    bar_ = Add(std::make_unique<ScrollbarWin>(OwnScene(), Element::EditScrollGraph, *graph,
                                              redrawWholeBar));
    bar_->SetLabel({ControlRole::kScrollBar, u"Scroll bar",
                    u"Drag the thumb, or click beside it to go a view back or ahead",
                    u"Page up, Page down"});
    graph_ = Add(std::move(graph));
}

void EditorWWin::MakeSideButtons() {
    sideButtons_ = Add(std::make_unique<ButtonBarWin>(
        OwnScene(), Element::EditButtonBar,
        std::array<ButtonBarWin::Button, ButtonBarWin::kButtons>{
            {{[this] { Undo(); }, [this] { return MayUndo(); },
              ControlLabel{ControlRole::kButton, u"Undo",
                           u"Take the last edit back, or do it again", u"Backspace"}},
             {[this] { Mark(); }, [this] { return MayEdit(); },
              ControlLabel{ControlRole::kButton, u"Mark",
                           u"Set a mark, or delete the one at the cursor", u"Insert"}},
             {[this] { RemoveCut(); }, [this] { return MayEdit() && s_.recording.currentCut >= 0; },
              ControlLabel{ControlRole::kButton, u"Delete cut",
                           u"Let the cut at the cursor in again", u"Delete"}}}}));

    struct Button {
        Element element;
        void (EditorWWin::*handler)();
        const char16_t* name;
        const char16_t* hint;
        const char16_t* shortcut;
    };
    const Button buttons[] = {
        {Element::EditZoomIn, &EditorWWin::ZoomIn, u"Zoom in", u"Show less, in more detail", u"Up"},
        {Element::EditZoomOut, &EditorWWin::ZoomOut, u"Zoom out", u"Show more of the recording",
         u"Down"},
    };
    for (const Button& button : buttons) {
        const auto handler = button.handler;
        auto* const control = Add(std::make_unique<PushButtonWin>(
            OwnScene(), button.element, [this, handler] { (this->*handler)(); }));
        control->SetLabel({ControlRole::kButton, button.name, button.hint, button.shortcut});
    }
    MakeMarkButtons(Element::EditBackMark, Element::EditForwardMark, true);
    cutBegin_ = Add(std::make_unique<ButtonWin>(OwnScene(), Element::EditRewind, 515, 516));
    cutEnd_ = Add(std::make_unique<ButtonWin>(OwnScene(), Element::EditFastForward, 517, 518));
    total_ = Add(std::make_unique<TotalNrSecsWin>(OwnScene(), Element::EditTotalTime,
                                                  OwnScene().skin.FontOf(SkinFont::kLabel)));
    total_->SetLabel({ControlRole::kText, u"Length", u"How long the recording is", {}});
}

}  // namespace orma
