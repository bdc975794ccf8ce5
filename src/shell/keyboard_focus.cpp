#include "shell/keyboard_focus.h"

#include <algorithm>
#include <iterator>

namespace orma {
namespace {

bool TakesFocus(Win& control) {
    const ControlLabel& label = control.Label();
    if (label.role == ControlRole::kNone || label.name.empty()) return false;
    const Rect& bounds = control.Bounds();
    return control.HitTest({bounds.x + bounds.w / 2, bounds.y + bounds.h / 2}) == &control;
}

}  // namespace

bool KeyboardFocus::OnKey(const WWin& screen, Key key, bool shift) {
    if (key == Key::kTab) {
        Move(screen, shift);
        return true;
    }
    if (control_ == nullptr) return false;
    Win& control = *control_;
    switch (key) {
        case Key::kSpace:
            control.Press();
            // What the press did may have led to another screen, which has nothing to release.
            if (control_ == &control) control.Release();
            return true;
        case Key::kPlus:
            control.StepBy(1);
            return true;
        case Key::kMinus:
            control.StepBy(-1);
            return true;
        case Key::kEscape:
            Clear();
            return true;
        default:
            return false;
    }
}

void KeyboardFocus::Clear() {
    if (control_ == nullptr) return;
    control_ = nullptr;
    window_.ShowFocus({});
}

void KeyboardFocus::Move(const WWin& screen, bool back) {
    std::vector<Win*> stops;
    std::ranges::copy_if(Singly(screen.Controls()), std::back_inserter(stops),
                         [](Win* control) { return TakesFocus(*control); });
    if (stops.empty()) {
        Clear();
        return;
    }
    if (back) std::ranges::reverse(stops);
    const auto present = std::ranges::find(stops, control_);
    const bool last = present == stops.end() || present + 1 == stops.end();
    control_ = last ? stops.front() : *(present + 1);
    window_.ShowFocus(control_->Bounds());
}

}  // namespace orma
