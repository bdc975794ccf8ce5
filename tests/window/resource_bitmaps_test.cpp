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
        EXPECT_FALSE(normal.Bitmap(number).IsEmpty()) << number;
        EXPECT_EQ(doubled.Bitmap(number).width, 2 * normal.Bitmap(number).width) << number;
        EXPECT_NE(bitmaps.File(number, true), bitmaps.File(number, false)) << number;
    }
    EXPECT_TRUE(bitmaps.File(525, false).empty());
}

}  // namespace
}  // namespace orma
