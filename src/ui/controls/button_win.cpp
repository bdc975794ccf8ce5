#include "ui/controls/button_win.h"

namespace orma {

ButtonWin::ButtonWin(const Scene& scene, Element element, int firstBitmap, int secondBitmap)
    : Win(scene, element), first_(firstBitmap), second_(secondBitmap) {}

void ButtonWin::SetState(int state) {
    if (state == state_) return;
    state_ = state;
    if (!IsShown()) return;
    scene_.canvas.CopyFromPage(NormalPage(), Covered());
    Paint();
}

void ButtonWin::Paint() {
    if (state_ == 0) return;
    const Picture& bitmap = scene_.skin.Bitmap(state_ == 1 ? first_ : second_);
    const Rect covered = Covered();
    scene_.canvas.Copy(bitmap, {0, 0, covered.w, covered.h}, {covered.x, covered.y});
}

}  // namespace orma
