// Pointer and keys.

#include <utility>

#include "shell/shell.h"

namespace orma {

void Shell::OnLeftDown(Point at) {
    WWin* const screen = Current();
    if (pressed_ || screen == nullptr) return;
    pressed_ = true;
    pointer_ = {.press = at, .offset = {}};
    s_.window.CapturePointer(true);
    captured_ = screen->HitTest(at);
    if (captured_ != nullptr) captured_->Press();
}

void Shell::OnPointerMove(Point at) {
    if (captured_ == nullptr) return;
    pointer_.offset = {at.x - pointer_.press.x, at.y - pointer_.press.y};
    captured_->Drag();
}

void Shell::OnLeftUp(Point at) {
    if (!pressed_) return;
    pressed_ = false;
    pointer_ = {.press = at, .offset = {}};
    s_.window.CapturePointer(false);
    if (Win* const control = std::exchange(captured_, nullptr)) control->Release();
}

void Shell::OnWheel(Point at, int steps, bool sideways) {
    WWin* const screen = Current();
    if (screen == nullptr) return;
    Win* const control = screen->HitTest(at);
    // Of two fingers that spread, the first one holds the control already.
    if (control != nullptr && (!pressed_ || control == captured_))
        control->OnWheel(at, steps, sideways);
}

void Shell::OnRightDown(Point at) {
    if (WWin* screen = Current()) screen->RightDown(at);
}

void Shell::OnRightUp(Point at) {
    if (WWin* screen = Current()) screen->RightUp(at);
}

void Shell::OnKeyDown(Key key, bool shift) {
    WWin* const screen = Current();
    if (screen == nullptr || key == Key::kRecordButton) return;
    if (key == Key::kF1) {
        (void)OnCommand(static_cast<std::uint32_t>(Command::kShortcuts));
        return;
    }
    // While the pointer holds a control, the keyboard does not press another one.
    if (!pressed_ && focus_.OnKey(*screen, key, shift)) return;
    screen->OnKey(key);
}

std::vector<ShortcutGroup> Shell::Shortcuts() const {
    constexpr std::pair<ScreenIndex, const char16_t*> kTitles[] = {
        {ScreenIndex::kRecorder, u"Record"},
        {ScreenIndex::kEditor, u"Editor"},
        {ScreenIndex::kClipEditor, u"Clip editor"},
        {ScreenIndex::kAbout, u"About"}};
    std::vector<ShortcutGroup> groups;
    for (const auto& [index, title] : kTitles) {
        const WWin* const screen = Screen(index);
        if (screen == nullptr || screen->Keys().empty()) continue;
        groups.push_back(ShortcutsOf(title, screen->Keys()));
        if (index == ScreenIndex::kClipEditor) AddShortcutsOfList(groups.back());
    }
    groups.push_back(ShortcutsOfWindow());
    return groups;
}

void Shell::OnKeyUp(Key key) {
    if (key != Key::kRecordButton || Screen(ScreenIndex::kRecorder) == nullptr) return;
    if (currentIndex_ == ScreenIndex::kProgress || quitting_) return;
    Transport& transport = s_.app.transport;
    const Recorder& recorder = s_.app.recorder;
    const bool saving = recorder.IsSaving() || recorder.IsSavingPending();
    if (saving || s_.app.player.IsPlaying())
        transport.Stop(true);
    else
        transport.Record(!ButtonsOf(transport.State()).record);
}

}  // namespace orma
