#include "ui/controls/toggle_button_win.h"

#include <utility>

namespace orma {

ToggleButtonWin::ToggleButtonWin(const Scene& scene, Element element,
                                 std::function<void(bool)> handler)
    : Win(scene, element), handler_(std::move(handler)) {}

void ToggleButtonWin::SetState(bool lit) {
    if (lit == lit_) return;
    lit_ = lit;
    if (IsShown()) scene_.canvas.CopyFromPage(lit ? PressedPage() : NormalPage(), rect_);
}

void ToggleButtonWin::Paint() {
    if (lit_) scene_.canvas.CopyFromPage(PressedPage(), rect_);
}

}  // namespace orma
