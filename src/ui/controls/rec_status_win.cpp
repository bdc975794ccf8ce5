#include "ui/controls/rec_status_win.h"

namespace orma {

RecStatusWin::RecStatusWin(const Scene& scene, Element element) : Win(scene, element) {}

void RecStatusWin::SetState(int state) {
    if (state == state_) return;
    state_ = state;
    if (!IsShown()) return;
    scene_.canvas.CopyFromPage(NormalPage(), rect_);
    Paint();
}

void RecStatusWin::Paint() {
    if (state_ < 0 || state_ >= kStates) return;
    const Picture& lamp = scene_.skin.Bitmap(scene_.skin.ForRecorder(kFirstBitmap + state_));
    scene_.canvas.Copy(lamp, {0, 0, rect_.w, rect_.h}, {rect_.x, rect_.y});
}

Text RecStatusWin::Value() const {
    static constexpr std::array<TextView, kStates> kNames = {
        u"Stopped", u"Ready", u"Recording", u"Playing", u"Fast forward", u"Rewind"};
    if (state_ < 0 || state_ >= kStates) return {};
    return Text(kNames[static_cast<std::size_t>(state_)]);
}

}  // namespace orma
