#include "ui/support/screen_rig.h"

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

}  // namespace

ScreenRig::ScreenRig(const RigOptions& options)
    : storage(WithLayout(options)),
      skin(storage, bitmaps, Text(kProgramFolder), options.client, options.upsideDown),
      image{options.client.width, options.client.height},
      canvas(image, ink, [this](const Rect& rect) { changes.push_back(rect); }),
      scene{skin, canvas, pointer, options.pages} {
    image.pixels.resize(static_cast<std::size_t>(image.width * image.height));
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

bool ScreenRig::Shows(int x, int y, int bitmap) const {
    return image.At(x, y) == PlainBitmaps::PixelOfBitmap(bitmap);
}

bool ScreenRig::ShowsExactly(const Rect& rect, Pixel pixel) const {
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if ((image.At(x, y) == pixel) != rect.Contains({x, y})) return false;
    return true;
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
