#include "ui/controls/stripe_win.h"

#include <array>
#include <cmath>
#include <utility>

namespace orma {
namespace {

constexpr double kFullCircle = 6.2831853;
constexpr double kLength = 5.0;  // of the pointer, design pixels
constexpr int kLineWidth = 2;
constexpr int kStepPixels = 8;
constexpr int kKnobBitmap = 519;

}  // namespace

StripeWin::StripeWin(const Scene& scene, Element element, Element middle, Element caption,
                     std::function<void(int)> turn)
    : Win(scene, element), caption_(scene.skin.RectOf(caption)), turn_(std::move(turn)) {
    const ElementRect& within = scene.skin.Design(middle);
    centre_ = {rect_.x + scene.skin.Scaled(within.x), rect_.y + scene.skin.Scaled(within.y)};
    // Turned, a knob that stands aside in its bitmap would leave its centre, which is not turned.
    const ElementRect& whole = scene.skin.Design(element);
    const bool central = 2 * within.x == whole.w && 2 * within.y == whole.h;
    bitmap_ = central ? scene.skin.ForRecorder(kKnobBitmap) : kKnobBitmap;
}

void StripeWin::KnobSetValue(std::int32_t value) {
    if (value == value_) return;
    value_ = value;
    if (!IsShown()) return;
    scene_.canvas.CopyFromPage(NormalPage(), rect_);
    PaintKnob();
}

void StripeWin::Paint() {
    if (!caption_.IsEmpty()) scene_.canvas.CopyFromPage(PressedPage(), caption_);
    PaintKnob();
}

void StripeWin::PaintKnob() {
    scene_.canvas.Copy(scene_.skin.Bitmap(bitmap_), {0, 0, rect_.w, rect_.h}, {rect_.x, rect_.y});

    const int degrees = 240 - static_cast<int>(std::int64_t{value_} * 300 / 65536) +
                        (scene_.skin.UpsideDown() ? 180 : 0);
    const double radians = degrees * kFullCircle / 360.0;
    const double length = kLength * static_cast<double>(scene_.skin.Scale());
    const Point end{static_cast<int>(centre_.x + std::cos(radians) * length + 0.5),
                    static_cast<int>(centre_.y - std::sin(radians) * length - 0.5)};
    const std::array<Point, 2> line = {centre_, end};
    scene_.canvas.DrawLine(rect_, line, kLineWidth, Colour{0, 0, 0});
}

void StripeWin::Drag() {
    const Point& offset = scene_.pointer.offset;
    const int moved = offset.x - offset.y - dragged_;
    int steps = 0;
    if (moved > kStepPixels) {
        steps = moved >> 3;
    } else if (moved <= -kStepPixels) {
        steps = (moved >> 3) + 1;  // as much as to the right: the ninth pixel turns
    }
    if (steps == 0) return;
    dragged_ += steps * kStepPixels;
    turn_(scene_.skin.UpsideDown() ? -steps : steps);
}

}  // namespace orma
