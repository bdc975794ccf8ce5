#include "ui/controls/button_bar_win.h"

#include <algorithm>
#include <utility>

namespace orma {
namespace {

/// A third of the picture, two thirds of the ground that it lies on: to be seen, and seen to rest.
Picture Faded(Picture picture, Colour ground) {
    const auto mix = [](Pixel from, Pixel to, int shift) {
        const Pixel mixed = ((from >> shift & 0xFF) + 2 * (to >> shift & 0xFF)) / 3;
        return mixed << shift;
    };
    const Pixel under = PixelOf(ground);
    for (Pixel& pixel : picture.indices.empty() ? picture.pixels : picture.palette)
        pixel = mix(pixel, under, 16) | mix(pixel, under, 8) | mix(pixel, under, 0);
    return picture;
}

}  // namespace

/// One of the buttons: its third of the bar.
class ButtonBarWin::Key : public Win {
  public:
    Key(const Scene& scene, const Rect& rect, int bitmap, Button button)
        : Win(scene, rect), bitmap_(bitmap), button_(std::move(button)) {
        SetLabel(std::move(button_.label));
    }

    void Paint() override {
        const Picture& bitmap = scene_.skin.Bitmap(bitmap_);
        const Point at{rect_.x, rect_.y + rect_.h / 2 - bitmap.height / 2};
        shown_ = IsEnabled();
        if (shown_)
            scene_.canvas.Copy(bitmap, bitmap.Bounds(), at);
        else
            scene_.canvas.Copy(Faded(bitmap, scene_.skin.Colours().textBackground), bitmap.Bounds(),
                               at);
    }
    void Update() {
        if (shown_ != IsEnabled()) Paint();
    }

    [[nodiscard]] Win* HitTest(Point at) override { return TakeIfInside(at); }
    void Press() override { button_.press(); }
    [[nodiscard]] bool IsEnabled() const override { return button_.isEnabled(); }

  private:
    int bitmap_;
    Button button_;
    bool shown_ = true;  // as enabled
};

ButtonBarWin::ButtonBarWin(const Scene& scene, Element element,
                           std::array<Button, kButtons> buttons)
    : Win(scene, element) {
    constexpr int kFirstBitmap = 512;
    for (int i = 0; i < kButtons; ++i) {
        const auto place = static_cast<std::size_t>(i);
        const int top = rect_.y + i * rect_.h / kButtons;
        const int bottom = rect_.y + (i + 1) * rect_.h / kButtons;
        auto key = std::make_unique<Key>(scene, Rect{rect_.x, top, rect_.w, bottom - top},
                                         kFirstBitmap + i, std::move(buttons[place]));
        keys_[place] = key.get();
        buttons_[place] = std::move(key);
    }
}

void ButtonBarWin::Paint() {
    for (Key* const key : keys_)
        key->Paint();
}

void ButtonBarWin::Update() {
    for (Key* const key : keys_)
        key->Update();
}

Win* ButtonBarWin::HitTest(Point at) {
    const bool beside = at.y >= rect_.y && at.y < rect_.Bottom() && at.x >= rect_.x;
    return beside ? this : nullptr;
}

void ButtonBarWin::Press() {
    const int third = (scene_.pointer.press.y - rect_.y) * kButtons / std::max(rect_.h, 1);
    keys_[static_cast<std::size_t>(std::clamp(third, 0, kButtons - 1))]->Press();
}

}  // namespace orma
