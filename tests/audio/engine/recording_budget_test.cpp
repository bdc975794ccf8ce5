#include "audio/engine/recording_budget.h"

#include <gtest/gtest.h>

#include "audio/engine/load_meter.h"
#include "audio/files/peak_level.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

TEST(RecordingBudget, CountsWholeSecondsOfTheFormatAbove1040Kilobytes) {
    TestFiles files;
    AudioState wav;
    AudioState mp2;  // 64 kbit/s at first
    mp2.mp2 = true;
    AudioState best = mp2;
    best.bitrate.SetMp2Bitrate(11, files.report);
    AudioState coarse = best;
    coarse.resolutionShift = 0;
    const struct {
        std::uint32_t kilobytes;
        const AudioState& audio;
        std::uint16_t channels;
        std::uint32_t periods;
    } cases[] = {
        {1040, wav, 1, 0},
        // 17 KB * 128 / 11025 is less than a second; 87 KB are the first whole second of mono WAV.
        {1041, wav, 1, 0},
        {1024 + 86, wav, 1, 0},
        {1024 + 87, wav, 1, 20},
        {1024 + 172, wav, 2, 0},
        {1024 + 173, wav, 2, 20},
        {1041, mp2, 1, 40},  // 17 KB * 128 / 1000 = 2 s
        {1041, mp2, 2, 40},
        {1024 + 1000, best, 2, 32 * 20},
        {1024 + 1000, coarse, 2, 32 * 5},
        {FreeKilobytes(40ULL << 30), wav, 1, 486945 * 20},  // (41943040 - 1024) * 128 / 11025
        {FreeKilobytes(9ULL << 40), mp2, 1, 0xFFFFFFFF},    // 9 TiB are not 1 TiB
    };
    for (const auto& one : cases)
        EXPECT_EQ(RecordingPeriods(one.kilobytes, one.audio, 44100, one.channels), one.periods)
            << one.kilobytes;
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
}

TEST(LoadMeter, TakesThePeakOfSixteenAfterTwoSeconds) {
    LoadMeter meter;
    for (int n = 0; n < 41; ++n)
        meter.Note(100, 20);
    EXPECT_EQ(meter.PeakMs(), 0U);  // forty after the first: still within two seconds
    meter.Note(116, 20);
    EXPECT_EQ(meter.PeakMs(), 101U);
    meter.Clear();
    // Opening the file is not counted: eleven of sixteen behind it.
    meter.Note(1600, 5);
    for (int n = 0; n < 11; ++n)
        meter.Note(16, 5);
    EXPECT_EQ(meter.PeakMs(), 11U);
}

}  // namespace
}  // namespace orma::test
