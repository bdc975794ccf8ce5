#include "audio/engine/recording_budget.h"

#include <gtest/gtest.h>

#include "audio/engine/load_meter.h"
#include "audio/files/peak_level.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

TEST(RecordingBudget, BeginsAbove1040Kilobytes) {
    AudioState wav;
    EXPECT_EQ(RecordingPeriods(1040, wav, 44100, 1), 0U);
    // 17 KB * 128 / 11025 is less than a second; 87 KB are the first whole second of mono WAV.
    EXPECT_EQ(RecordingPeriods(1041, wav, 44100, 1), 0U);
    EXPECT_EQ(RecordingPeriods(1024 + 86, wav, 44100, 1), 0U);
    EXPECT_EQ(RecordingPeriods(1024 + 87, wav, 44100, 1), 20U);
    EXPECT_EQ(RecordingPeriods(1024 + 172, wav, 44100, 2), 0U);
    EXPECT_EQ(RecordingPeriods(1024 + 173, wav, 44100, 2), 20U);
}

TEST(RecordingBudget, CountsTheBitRateForMp2) {
    AudioState mp2;
    mp2.mp2 = true;  // 64 kbit/s at first: 17 KB * 128 / 1000 = 2 s
    EXPECT_EQ(RecordingPeriods(1041, mp2, 44100, 1), 40U);
    EXPECT_EQ(RecordingPeriods(1041, mp2, 44100, 2), 40U);
    TestFiles files;
    mp2.bitrate.SetMp2Bitrate(11, files.report);
    EXPECT_EQ(RecordingPeriods(1024 + 1000, mp2, 44100, 2), 32U * 20U);
    mp2.resolutionShift = 0;
    EXPECT_EQ(RecordingPeriods(1024 + 1000, mp2, 44100, 2), 32U * 5U);
}

TEST(RecordingBudget, StaysRightOnLargeMedia) {
    AudioState wav;
    const std::uint32_t kilobytes = FreeKilobytes(40ULL << 30);  // 40 GiB
    // (41943040 - 1024) * 128 / 11025
    EXPECT_EQ(RecordingSeconds(kilobytes, wav, 44100, 1), 486945U);
    EXPECT_EQ(RecordingPeriods(kilobytes, wav, 44100, 1), 9738900U);
    EXPECT_EQ(FreeKilobytes(9ULL << 40), 0xFFFFFFFFU);  // 9 TiB are not 1 TiB
    AudioState mp2;
    mp2.mp2 = true;
    EXPECT_EQ(RecordingPeriods(0xFFFFFFFF, mp2, 44100, 1), 0xFFFFFFFFU);
}

TEST(RecordingBudget, EndsATakeBeforeItsFileReaches4Gigabytes) {
    EXPECT_EQ(MostPeriodsOfFile(4410), 970111U);  // 13 h 28 min of mono WAV
    EXPECT_GT(MostPeriodsOfFile(1), 0xFE000000U);
    EXPECT_NE(MostPeriodsOfFile(0), 0U);
}

TEST(PeakLevel, CountsNegativePeaksOf16BitSoundAlone) {
    const std::int16_t samples[] = {5, -32768, 100};
    EXPECT_EQ(PeakOf16Bit(samples), 32768U);
    const Bytes packed = {0xFF, 0x00, 0x80, 0x00, 0x34, 0x12, 0x00};  // -32768, 0x1234, a rest
    EXPECT_EQ(PeakOf24Bit(packed), 0x1234U);
    EXPECT_EQ(PeakOf24Bit(ByteSpan(packed).first(6)), 0x1234U);
}

TEST(LoadMeter, TakesThePeakOfSixteenAfterTwoSeconds) {
    LoadMeter meter;
    for (int n = 0; n < 41; ++n)
        meter.Note(100, 20);
    EXPECT_EQ(meter.PeakMs(), 0U);  // forty after the first: still within two seconds
    meter.Note(116, 20);
    EXPECT_EQ(meter.PeakMs(), 101U);
    for (int n = 0; n < 16; ++n)
        meter.Note(15, 20);
    EXPECT_EQ(meter.PeakMs(), 101U);
    meter.Clear();
    EXPECT_EQ(meter.PeakMs(), 0U);
    // Opening the file is not counted: eleven of sixteen behind it.
    meter.Note(1600, 5);
    for (int n = 0; n < 11; ++n)
        meter.Note(16, 5);
    EXPECT_EQ(meter.PeakMs(), 11U);
}

}  // namespace
}  // namespace orma::test
