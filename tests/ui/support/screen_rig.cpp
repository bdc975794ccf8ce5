#include "ui/support/screen_rig.h"

#include <algorithm>
#include <utility>

namespace orma::test {
namespace {

constexpr TextView kProgramFolder = u"/program/";

MemoryStorage WithLayout(const RigOptions& options) {
    MemoryStorage storage;
    if (!options.layout.empty()) {
        storage.Put(SkinFolder(Text(kProgramFolder), options.client) + u"pos.txt",
                    AsBytes(options.layout));
    }
    return storage;
}

Picture Black(Size size) {
    return {size.width, size.height,
            std::vector<Pixel>(static_cast<std::size_t>(size.width) *
                               static_cast<std::size_t>(size.height))};
}

}  // namespace

ScreenRig::ScreenRig(const RigOptions& options)
    : storage(WithLayout(options)),
      skin(storage, bitmaps, Text(kProgramFolder), options.client, options.upsideDown),
      image(Black(options.client)),
      canvas(image, ink, [this](const Rect& rect) { changes.push_back(rect); }),
      scene{skin, canvas, pointer, options.pages} {
    PaintPage();
}

void ScreenRig::PaintPage() {
    const Picture& page = skin.Bitmap(scene.pages.normal);
    canvas.CopyFromPage(page, page.Bounds());
    ink.Forget();
    changes.clear();
}

std::vector<Rect> ScreenRig::TakeChanges() {
    return std::exchange(changes, {});
}

Pixel ScreenRig::At(int x, int y) const {
    return image.Bounds().Contains({x, y}) ? image.At(x, y) : Pixel{0};
}

bool ScreenRig::Shows(int x, int y, int bitmap) const {
    return At(x, y) == PlainBitmaps::PixelOfBitmap(bitmap);
}

Rect ScreenRig::ExtentOf(Pixel pixel) const {
    int left = image.width;
    int top = image.height;
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (image.At(x, y) != pixel) continue;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
        }
    }
    return right == 0 ? Rect{} : Rect{left, top, right - left, bottom - top};
}

int ScreenRig::CountOf(Pixel pixel) const {
    return static_cast<int>(std::count(image.pixels.begin(), image.pixels.end(), pixel));
}

bool ScreenRig::ShowsExactly(const Rect& rect, Pixel pixel) const {
    const int count = CountOf(pixel);
    if (rect.IsEmpty()) return count == 0;
    return ExtentOf(pixel) == rect && count == rect.w * rect.h;
}

Win* ScreenRig::PressAt(Win& root, Point at) {
    pointer = {at, {}};
    taker_ = root.HitTest(at);
    if (taker_ != nullptr) taker_->Press();
    return taker_;
}

void ScreenRig::DragTo(Point at) {
    pointer.offset = {at.x - pointer.press.x, at.y - pointer.press.y};
    if (taker_ != nullptr) taker_->Drag();
}

void ScreenRig::Release() {
    if (Win* taker = std::exchange(taker_, nullptr)) taker->Release();
}

}  // namespace orma::test
