#include "ui/screens/w_win.h"

#include <algorithm>

namespace orma {

WWin::WWin(ScreenIndex index, const Scene& scene, ScreenHost& host)
    : Win(ownScene_, Rect{0, 0, scene.skin.Page().width, scene.skin.Page().height}),
      index_(index),
      ownScene_(scene),
      host_(host) {
    ownScene_.shown = false;
}

void WWin::Paint() {
    ownScene_.canvas.CopyFromPage(NormalPage(), Bounds());
    for (const auto& control : controls_)
        if (control) control->Paint();
}

Win* WWin::HitTest(Point at) {
    for (const auto& control : controls_) {
        if (!control) continue;
        if (Win* const taker = control->HitTest(at)) return taker;
    }
    return nullptr;
}

void WWin::OnKey(Key key) {
    const auto action = std::ranges::find(keys_, key, &KeyAction::key);
    if (action != keys_.end()) action->act();
}

void WWin::Entered() {
    ownScene_.shown = true;
    host_.TickScreen(index_, true);
    host_.Invalidate();
}

void WWin::Left() {
    ownScene_.shown = false;
    host_.TickScreen(index_, false);
}

}  // namespace orma
