#include "ui/skin/bitmap_file.h"

#include <gtest/gtest.h>

#include "support/bitmap_bytes.h"
#include "ui/support/picture_pixels.h"

namespace orma {
namespace {

/// A file of 3 x 2 pixels: headers of `infoBytes`, then `palette`, then `rows`.
Bytes File(std::uint16_t bits, std::int32_t height, const std::vector<Pixel>& palette,
           const Bytes& rows, std::uint32_t infoBytes = 40) {
    Bytes file(14 + infoBytes + 4 * palette.size());
    file[0] = 'B';
    file[1] = 'M';
    StoreLe(&file[10], static_cast<std::uint32_t>(file.size()));
    StoreLe(&file[14], infoBytes);
    StoreLe(&file[18], std::int32_t{3});
    StoreLe(&file[22], height);
    StoreLe(&file[28], bits);
    StoreLe(&file[46], static_cast<std::uint32_t>(palette.size()));
    for (std::size_t i = 0; i < palette.size(); ++i)
        StoreLe(&file[14 + infoBytes + 4 * i], palette[i]);
    file.insert(file.end(), rows.begin(), rows.end());
    return file;
}

TEST(BitmapFileTest, EveryDepthGivesTheSamePicture) {
    const std::vector<Pixel> palette = {0x000000, 0xFF102030};
    const Bytes rows24 = {
        0,    0,    0,    0, 0, 0, 0x30, 0x20, 0x10, 9, 9, 9,  // lower row, padding
        0x30, 0x20, 0x10, 0, 0, 0, 0x30, 0x20, 0x10, 9, 9, 9};
    const Bytes rows32 = {0x30, 0x20, 0x10, 7, 0, 0, 0, 7, 0x30, 0x20, 0x10, 7,  // from the top
                          0,    0,    0,    7, 0, 0, 0, 7, 0x30, 0x20, 0x10, 7};
    const std::pair<const char*, Bytes> cases[] = {
        {"1 bit", File(1, 2, palette, {0x20, 0, 0, 0, 0xA0, 0, 0, 0})},
        {"4 bits", File(4, 2, palette, {0x00, 0x10, 0, 0, 0x10, 0x10, 0, 0})},
        {"8 bits, a longer header", File(8, 2, palette, {0, 0, 1, 9, 1, 0, 1, 9}, 124)},
        {"8 bits, indices without a colour", File(8, 2, palette, {2, 99, 1, 9, 1, 255, 1, 9})},
        {"24 bits", File(24, 2, {}, rows24)},
        {"32 bits from the top down", File(32, -2, {}, rows32)},
    };
    constexpr Pixel kInk = 0x102030;
    for (const auto& [name, file] : cases) {
        const Picture picture = DecodeBitmap(file);
        EXPECT_TRUE(picture.width == 3 && picture.height == 2) << name;
        EXPECT_EQ(test::PixelsOf(picture), (std::vector<Pixel>{kInk, 0, kInk, 0, 0, kInk})) << name;
    }
}

TEST(BitmapFileTest, ADamagedFileGivesNoPicture) {
    const Bytes good = test::GreyBitmap(5, 3);
    ASSERT_FALSE(DecodeBitmap(good).IsEmpty());
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{53}, std::size_t{900}, good.size() - 1})
        EXPECT_TRUE(DecodeBitmap(ByteSpan(good).first(size)).IsEmpty()) << size;

    const auto with = [&](std::size_t at, std::int32_t value) {
        Bytes file = good;
        StoreLe(&file[at], value);
        return DecodeBitmap(file).IsEmpty();
    };
    EXPECT_TRUE(with(0, 0)) << "no bitmap";
    EXPECT_TRUE(with(10, -1)) << "rows beyond the end";
    EXPECT_TRUE(with(10, 1079)) << "one byte of the rows is missing";
    EXPECT_TRUE(with(14, 12)) << "an older header";
    EXPECT_TRUE(with(14, -14)) << "a header beyond the end";
    for (const std::size_t at : {18, 22})  // width, height
        for (const std::int32_t size : {0, 0x7FFFFFFF, std::numeric_limits<std::int32_t>::min()})
            EXPECT_TRUE(with(at, size)) << at << ": " << size;
    EXPECT_TRUE(with(18, -5)) << "from right to left";
    EXPECT_TRUE(with(28, 16)) << "16 bits a pixel";
    EXPECT_TRUE(with(30, 1)) << "run lengths";
}

}  // namespace
}  // namespace orma
