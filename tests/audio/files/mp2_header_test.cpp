#include "audio/files/mp2_header.h"

#include <gtest/gtest.h>

namespace orma::test {
namespace {

TEST(Mp2Header, ReckonsTheFrameLengthOfLayer2Alone) {
    const struct {
        std::uint8_t first, second, third;
        std::size_t bytes;
    } cases[] = {
        {0xFF, 0xFD, 0x14, 96},    // 32 kbit/s at 48000 Hz
        {0xFF, 0xFD, 0x84, 384},   // 128
        {0xFF, 0xFC, 0x86, 385},   // padded, with CRC
        {0xFF, 0xFD, 0xE4, 1152},  // 384
        {0xFF, 0xFD, 0x80, 417},   // 44100 Hz
        {0xFF, 0xFD, 0xE2, 1254},  // the longest: 384, 44100 Hz, padded
        {0xFF, 0xFD, 0x88, 384},   // 32000 Hz counts as 48000
        {0xFF, 0xFD, 0x04, 1111},  // free format
        {0xFF, 0xFD, 0xF4, 1111},  // forbidden rate
        {0xFF, 0xFB, 0x84, 1111},  // Layer III
        {0xFF, 0xFF, 0x84, 1111},  // Layer I
        {0xFF, 0xF5, 0x84, 1111},  // MPEG-2
        {0xFE, 0xFD, 0x84, 1111},
    };
    for (const auto& one : cases)
        EXPECT_EQ((Mp2Header{{one.first, one.second, one.third, 0xC4}}.FrameBytes(1111)), one.bytes)
            << unsigned{one.second} << ' ' << unsigned{one.third};
}

}  // namespace
}  // namespace orma::test
