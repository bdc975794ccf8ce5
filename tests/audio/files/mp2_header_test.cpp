#include "audio/files/mp2_header.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace orma::test {
namespace {

TEST(Mp2Bitrate, RefusesAnIndexAboveTheTable) {
    TestFiles files;
    Mp2Bitrate bitrate;
    bitrate.SetMp2Bitrate(11, files.report);
    EXPECT_EQ(bitrate.BitsPerSecond(), 256000U);
    EXPECT_EQ(bitrate.FrameBytes(), 768U);
    EXPECT_EQ(bitrate.BytesPerPeriod(2), 1600U);
    EXPECT_TRUE(files.boxes.shown.empty());
    bitrate.SetMp2Bitrate(12, files.report);
    EXPECT_EQ(bitrate.Index(), 11U);
    EXPECT_EQ(files.boxes.Texts(), std::vector<Text>{u"Illegal bitrate"});
}

TEST(Mp2Header, TellsLayer2FromEverythingElse) {
    for (const unsigned second : {0xFDU, 0xFCU, 0xFBU, 0xFFU, 0xF5U}) {  // III, I, MPEG-2
        const Mp2Header header{{0xFF, static_cast<std::uint8_t>(second), 0x84, 0xC4}};
        EXPECT_EQ(header.IsLayer2(), second == 0xFD || second == 0xFC) << second;
    }
    EXPECT_FALSE((Mp2Header{{0xFE, 0xFD, 0x84, 0xC4}}.IsLayer2()));
}

TEST(Mp2Header, ReckonsTheFrameLength) {
    const auto length = [](std::uint8_t second, std::uint8_t third) {
        return Mp2Header{{0xFF, second, third, 0xC4}}.FrameBytes(1111);
    };
    EXPECT_EQ(length(0xFD, 0x14), 96U);    // 32 kbit/s at 48000 Hz
    EXPECT_EQ(length(0xFD, 0x84), 384U);   // 128
    EXPECT_EQ(length(0xFC, 0x86), 385U);   // padded, with CRC
    EXPECT_EQ(length(0xFD, 0xE4), 1152U);  // 384
    EXPECT_EQ(length(0xFD, 0x80), 417U);   // 44100 Hz
    EXPECT_EQ(length(0xFD, 0xE2), 1254U);  // the longest: 384, 44100 Hz, padded
    EXPECT_EQ(length(0xFD, 0x88), 384U);   // 32000 Hz counts as 48000
    EXPECT_EQ(length(0xFD, 0x04), 1111U);  // free format
    EXPECT_EQ(length(0xFD, 0xF4), 1111U);  // forbidden rate
    EXPECT_EQ(length(0xFB, 0x84), 1111U);  // not Layer II
}

}  // namespace
}  // namespace orma::test
