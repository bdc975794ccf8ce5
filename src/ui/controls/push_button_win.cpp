#include "ui/controls/push_button_win.h"

#include <utility>

namespace orma {

PushButtonWin::PushButtonWin(const Scene& scene, Element element, std::function<void()> handler)
    : Win(scene, element), handler_(std::move(handler)) {}

void PushButtonWin::Press() {
    scene_.canvas.CopyFromPage(PressedPage(), rect_);
    handler_();
}

void PushButtonWin::Release() {
    scene_.canvas.CopyFromPage(NormalPage(), rect_);
}

}  // namespace orma
