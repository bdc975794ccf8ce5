#include "ui/controls/button_bar_win.h"

#include <algorithm>
#include <utility>

namespace orma {

ButtonBarWin::ButtonBarWin(const Scene& scene, Element element, Handlers handlers)
    : Win(scene, element),
      handlers_{std::move(handlers.undo), std::move(handlers.mark), std::move(handlers.deleteCut)} {
}

void ButtonBarWin::Paint() {
    for (int i = 0; i < kButtons; ++i) {
        const Picture& bitmap = scene_.skin.Bitmap(kFirstBitmap + i);
        const int middle = rect_.y + (2 * i + 1) * rect_.h / (2 * kButtons);
        scene_.canvas.Copy(bitmap, bitmap.Bounds(), {rect_.x, middle - bitmap.height / 2});
    }
}

Win* ButtonBarWin::HitTest(Point at) {
    const bool beside = at.y >= rect_.y && at.y < rect_.Bottom() && at.x >= rect_.x;
    return beside ? this : nullptr;
}

void ButtonBarWin::Press() {
    const int third = (scene_.pointer.press.y - rect_.y) * kButtons / std::max(rect_.h, 1);
    handlers_[static_cast<std::size_t>(std::clamp(third, 0, kButtons - 1))]();
}

}  // namespace orma
