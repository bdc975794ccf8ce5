// Bitmap files of a skin folder: decoded, and stretched to a window.

#include "fuzz/fuzz.h"
#include "ui/skin/bitmap_file.h"
#include "ui/skin/skin.h"

namespace orma::test {

// A byte of one bit a pixel makes eight pixels of 4 bytes, here and in the skin, and 2.25 times as
// many when they are stretched; the file itself, twice. The skin.
const MemoryBudget kMemoryBudget{.fixedBytes = 16 * 1024, .bytesPerInputByte = 2 * 32 + 72 + 8};

namespace {

class NoBitmaps : public BuiltInBitmaps {
  public:
    std::vector<std::uint8_t> File(int, bool) override { return {}; }
};

void TryPicture(const Picture& picture) {
    const auto width = static_cast<std::size_t>(picture.width);
    const auto height = static_cast<std::size_t>(picture.height);
    Require(picture.pixels.size() + picture.indices.size() == width * height,
            "a pixel for each place");
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            Require(picture.At(x, y) <= 0xFFFFFF, "no pixel beyond its three colours");
}

}  // namespace

void TryInput(ByteSpan bytes) {
    FuzzFiles files(bytes.size());
    files.storage.Put(SkinFolder(u"/", {360, 405}) + u"494.bmp", bytes);
    const Picture plain = DecodeBitmap(bytes);
    TryPicture(plain);

    NoBitmaps none;
    Skin skin(files.storage, none, u"/", {360, 405}, false);
    const Picture& stretched = skin.Bitmap(494);
    TryPicture(stretched);
    if (stretched.IsEmpty()) {
        Require(plain.IsEmpty() || skin.Scaled(plain.width) == 0 || skin.Scaled(plain.height) == 0,
                "a picture is shown");
        return;
    }
    Require(stretched.width == skin.Scaled(plain.width) &&
                stretched.height == skin.Scaled(plain.height),
            "stretched to the scale");
    Require(stretched.At(0, 0) == plain.At(0, 0), "it begins with the same pixel");
}

}  // namespace orma::test
