#include "ui/support/screen_rig.h"

#include <utility>

#include "support/byte_builder.h"

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

Size SizeOf(int number) {
    const struct {
        int first, last;
        Size size;
    } sizes[] = {{500, 502, {1, 80}},  {511, 511, {5, 5}},   {503, 508, {16, 12}},
                 {512, 514, {10, 10}}, {515, 518, {35, 22}}, {519, 519, {38, 20}},
                 {520, 520, {75, 50}}};
    for (const auto& some : sizes)
        if (number >= some.first && number <= some.last) return some.size;
    return {240, 270};
}

}  // namespace

std::vector<std::uint8_t> PlainBitmaps::File(int number, bool doubled) {
    const Size size = SizeOf(number);
    const auto width = static_cast<std::uint32_t>(doubled ? 2 * size.width : size.width);
    const auto height = static_cast<std::uint32_t>(doubled ? 2 * size.height : size.height);
    const std::uint32_t pixelBytes = (width + 3) / 4 * 4 * height;
    constexpr std::uint32_t kHeaders = 14 + 40 + 256 * 4;

    ByteBuilder file;
    file.Put("BM").U32(kHeaders + pixelBytes).U32(0).U32(kHeaders);
    file.U32(40).U32(width).U32(height).U16(1).U16(8).U32(0).U32(pixelBytes);
    file.U32(0).U32(0).U32(256).U32(0);
    file.U32(PixelOfBitmap(number)).Fill(std::size_t{255} * 4);
    return file.Fill(pixelBytes).bytes;
}

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
