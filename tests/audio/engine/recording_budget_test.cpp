#include "audio/engine/recording_budget.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace orma::test {
namespace {

TEST(RecordingBudget, CountsWholeSecondsOfTheFormatAbove1040Kilobytes) {
    TestFiles files;
    AudioState wav;
    AudioState mp2;  // 64 kbit/s at first
    mp2.mp2 = true;
    AudioState coarse = mp2;
    coarse.bitrate.SetMp2Bitrate(11, files.report);
    coarse.resolutionShift = 0;
    const struct {
        std::uint32_t kilobytes;
        const AudioState& audio;
        std::uint16_t channels;
        std::uint32_t periods;
    } cases[] = {
        // 17 KB * 128 / 11025 is less than a second; 87 KB are the first whole second of mono WAV.
        {1041, wav, 1, 0},
        {1024 + 86, wav, 1, 0},
        {1024 + 87, wav, 1, 20},
        {1024 + 172, wav, 2, 0},
        {1024 + 173, wav, 2, 20},
        {1041, mp2, 1, 40},  // 17 KB * 128 / 1000 = 2 s
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

}  // namespace
}  // namespace orma::test
