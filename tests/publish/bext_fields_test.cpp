#include "publish/bext_fields.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(ModifiedJulianDay, CountsFromNovember1858) {
    EXPECT_EQ(ModifiedJulianDay({.year = 1858, .month = 11, .day = 17}), 0U);
    EXPECT_EQ(ModifiedJulianDay({.year = 2000, .month = 2, .day = 29}), 51603U);
    EXPECT_EQ(ModifiedJulianDay({.year = 2000, .month = 3, .day = 1}), 51604U);
    EXPECT_EQ(ModifiedJulianDay({.year = 2100, .month = 3, .day = 1}), 88128U);
}

TEST(BextFields, FillTheHeadByteForByte) {
    const BwfHead fields = BextFields(std::string(300, 'x'), {2009, 1, 1, 5, 9, 7, 3, 42}, 2,
                                      0x12345678, {0x04030201, 0x08070605, 0x0C0B0A09});
    const auto head = fields.Encode();
    const auto text = [&](std::size_t at, std::size_t count) {
        return std::string(head.begin() + static_cast<std::ptrdiff_t>(at),
                           head.begin() + static_cast<std::ptrdiff_t>(at + count));
    };
    EXPECT_EQ(text(20, 256), std::string(255, 'x') + '\0');
    EXPECT_EQ(text(276, 32), "PC" + std::string(30, '\0'));
    EXPECT_EQ(text(308, 32), "Orma" + std::string(28, '\0'));
    EXPECT_EQ(text(340, 18), "2009- 1- 5 9: 7: 3");
    // 9:07:03 are 32823 s, times 48000: 1575504000 = 0x5DE84880.
    const Bytes umid = {0x06, 0x0A, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x09, 0x13,
                        0x33, 0x01, 0x12, 0x34, 0x80, 0x48, 0xE8, 0x5D,
                        // 5 January 2009 is day 054836, the last two digits first.
                        0x36, 0x48, 0x05, 0x80, 0x78, 0x56};
    EXPECT_EQ(Bytes(head.begin() + 368, head.begin() + 394), umid);
    EXPECT_EQ(Bytes(head.begin() + 394, head.begin() + 420), Bytes(26));
    EXPECT_EQ(Bytes(head.begin() + 420, head.begin() + 432),
              (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(Bytes(head.begin() + 358, head.begin() + 368),
              (Bytes{0x80, 0x48, 0xE8, 0x5D, 0, 0, 0, 0, 1, 0}));
}

}  // namespace
}  // namespace orma
