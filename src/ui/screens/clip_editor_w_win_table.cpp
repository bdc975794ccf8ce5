// The clip editor's table of controls, made once, in its order.

#include <algorithm>
#include <memory>
#include <utility>

#include "ui/controls/push_button_win.h"
#include "ui/screens/clip_editor_w_win.h"

namespace orma {
namespace {

constexpr int kLeastRow = 17;  // design pixels, as is:
constexpr int kScrollBar = 6;
constexpr int kInset = 5;

}  // namespace

ClipEditorWWin::ClipEditorWWin(const Scene& scene, ScreenHost& host, ClipEditorServices services,
                               bool detailed)
    : WWin(ScreenIndex::kClipEditor, scene, host),
      s_(std::move(services)),
      detailed_(detailed),
      look_(Look()) {
    stop_ = Add(std::make_unique<ToggleButtonWin>(OwnScene(), Element::CStop, [this](bool lit) {
        if (lit) Stop();
    }));
    stop_->SetLabel({ControlRole::kToggle, u"Stop", u"Stop playing", u"7"});
    play_ = Add(std::make_unique<ToggleButtonWin>(OwnScene(), Element::CPlay, [this](bool lit) {
        if (lit) PlayFromCurrent(false);
    }));
    play_->SetLabel({ControlRole::kToggle, u"Play",
                     u"Play the clips from the marked one on; with Shift and Enter, it alone",
                     u"8"});
    MakeListButtons();
    BindKeys();
}

void ClipEditorWWin::MakeListButtons() {
    struct Button {
        Element element;
        void (*press)(ClipEditorWWin& screen);
        const char16_t* name;
        const char16_t* hint;
        const char16_t* shortcut;
    };
    const Button buttons[] = {
        {Element::CInsert, [](ClipEditorWWin& screen) { screen.Insert(); }, u"Add",
         u"Add a recording in front of the marked clip, or at the end", u"Insert"},
        {Element::CUp, [](ClipEditorWWin& screen) { screen.MoveUp(); }, u"Move up",
         u"Let the marked clip be heard earlier", u"Ctrl+Up"},
        {Element::CDown, [](ClipEditorWWin& screen) { screen.MoveDown(); }, u"Move down",
         u"Let the marked clip be heard later", u"Ctrl+Down"},
        {Element::CRemove, [](ClipEditorWWin& screen) { screen.Remove(); }, u"Remove",
         u"Take the marked clip out of the list; its recording stays", u"Delete"},
        {Element::CRotText, [](ClipEditorWWin& screen) { screen.Renew(); }, u"Renew",
         u"Read length and time of every clip anew", u"0"},
    };
    for (const Button& button : buttons) {
        const auto press = button.press;
        auto* const control = Add(std::make_unique<PushButtonWin>(OwnScene(), button.element,
                                                                  [this, press] { press(*this); }));
        control->SetLabel({ControlRole::kButton, button.name, button.hint, button.shortcut});
    }
}

void ClipEditorWWin::BindKeys() {
    for (const Key key : {Key::kEnter, Key::kSpace})
        Bind(key, u"Play the clips from the marked one on, or stop",
             [this] { IsPlaying() ? Stop() : PlayFromCurrent(false); });
    Bind(Key::k7, u"Stop", [this] { Stop(); });
    Bind(Key::k8, u"Play the clips from the marked one on", [this] { PlayFromCurrent(false); });
    Bind(Key::kInsert, u"Add a recording", [this] { Insert(); });
    Bind(Key::kDelete, u"Take the marked clip out of the list", [this] { Remove(); });
    Bind(Key::k0, u"Read length and time of every clip anew", [this] { Renew(); });
}

// Rows fill the display without a part of one. Under the header, what is wider than the display is
// scrolled to.
ClipListLook ClipEditorWWin::Look() const {
    const Skin& skin = OwnScene().skin;
    ClipListLook look;
    look.place = skin.RectOf(Element::CWindow);
    look.colours = skin.Colours();
    look.inset = skin.Scaled(kInset);
    look.hairline = std::max(skin.Scaled(1), 1);
    look.scrollBar = skin.Scaled(kScrollBar);
    look.header = detailed_;
    const int bar = detailed_ ? look.scrollBar : 0;
    const int height = look.place.h - bar;
    const int rows = std::max(height / std::max(skin.Scaled(kLeastRow), 1), 1);
    look.rowHeight = height / rows;
    look.place.y += height % rows / 2;
    look.place.h = rows * look.rowHeight + bar;
    return look;
}

}  // namespace orma
