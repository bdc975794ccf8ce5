#include "window/resource_bitmaps.h"

#include <gtest/gtest.h>

#include "support/memory_storage.h"

namespace orma {
namespace {

TEST(ResourceBitmapsTest, TheProgramCarriesEveryBitmapAtBothSizes) {
    test::MemoryStorage storage;
    ResourceBitmaps bitmaps;
    Skin normal(storage, bitmaps, u"/none/", {240, 270}, false);
    Skin doubled(storage, bitmaps, u"/none/", {480, 540}, false);
    for (int number = Skin::kFirstBitmap; number <= Skin::kLastBitmap; ++number) {
        SCOPED_TRACE(number);
        const Picture& small = normal.Bitmap(number);
        const Picture& large = doubled.Bitmap(number);
        ASSERT_FALSE(small.IsEmpty());
        EXPECT_EQ(large.width, 2 * small.width);
        EXPECT_EQ(large.height, 2 * small.height);
    }
    EXPECT_EQ(normal.Bitmap(494).width, 240);

    // Drawn at that size, not stretched: somewhere the four pixels of a small one differ.
    const Picture& page = doubled.Bitmap(494);
    int fine = 0;
    for (int y = 0; y < page.height; y += 2)
        for (int x = 0; x < page.width; x += 2)
            fine += page.At(x, y) != page.At(x + 1, y) || page.At(x, y) != page.At(x, y + 1);
    EXPECT_GT(fine, 100);
    EXPECT_TRUE(bitmaps.File(525, false).empty());
}

}  // namespace
}  // namespace orma
