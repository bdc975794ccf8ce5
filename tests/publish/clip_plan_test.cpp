#include "publish/clip_plan.h"

#include <numeric>

#include <gtest/gtest.h>

#include "publish/publication.h"

namespace orma {
namespace {

using Kept = std::vector<PeriodRange>;
using Frames = std::vector<FrameRange>;

/// A recording of `periods` whose levels are their own numbers.
LevelSheet Sheet(std::uint32_t periods, std::vector<RemovedRange> cuts = {}) {
    LevelSheet sheet;
    sheet.levels.resize(periods);
    std::iota(sheet.levels.begin(), sheet.levels.end(), std::uint8_t{0});
    sheet.rangeEnd = periods;
    sheet.cuts = std::move(cuts);
    return sheet;
}

ClipEntry Clip(std::uint32_t begin, std::uint32_t end) {
    ClipEntry clip;
    clip.name = u"talk00";
    clip.begin = begin;
    clip.end = end;
    return clip;
}

TEST(ClipPlan, WithoutAnOwnRangeTakesTheWholeRecordingAndItsTail) {
    const ClipPlan plan = PlanClip(Clip(3, 0), Sheet(30), {29, 30, 65}, 2);
    EXPECT_EQ(plan.kept, (Kept{{0, 30}}));
    EXPECT_TRUE(plan.takesTail);
    // 30 periods of 50 ms are 62.5 frames; all 65 that are stored are sent.
    EXPECT_EQ(plan.frames, (Frames{{0, 65}}));
    EXPECT_EQ(plan.FrameCount(), 65U);
}

TEST(ClipPlan, LeavesOutCutsOnTheLowerFrames) {
    // At 20 periods a second a period is 125/60 frames.
    const ClipPlan plan =
        PlanClip(Clip(5, 25), Sheet(30, {{0, 6, 0}, {10, 12, 0}, {24, 30, 0}}), {29, 30, 63}, 2);
    EXPECT_EQ(plan.kept, (Kept{{6, 10}, {12, 24}}));
    EXPECT_FALSE(plan.takesTail);
    EXPECT_EQ(plan.frames, (Frames{{12, 20}, {25, 50}}));
    EXPECT_EQ(plan.levels, (std::vector<std::uint8_t>{6, 7, 8, 9, 12, 13, 14, 15, 16, 17, 18, 19,
                                                      20, 21, 22, 23}));
}

TEST(ClipPlan, TakesATailAtTheEndAloneAndNothingBeyondIt) {
    EXPECT_FALSE(PlanClip(Clip(0, 0), Sheet(30, {{20, 30, 0}}), {29, 30, 65}, 2).takesTail);
    EXPECT_FALSE(PlanClip(Clip(0, 28), Sheet(30), {29, 30, 65}, 2).takesTail);
    EXPECT_TRUE(PlanClip(Clip(28, 29), Sheet(30), {29, 30, 65}, 2).takesTail)
        << "the end as the reader states it";
    const StoredSound sound{30, 30, 0};
    EXPECT_EQ(PlanClip(Clip(10, 4000000000), Sheet(30), sound, 2).kept, (Kept{{10, 30}}));
    EXPECT_TRUE(PlanClip(Clip(50, 60), Sheet(30), sound, 2).kept.empty());
    EXPECT_TRUE(PlanClip(Clip(20, 10), Sheet(30), sound, 2).kept.empty());
}

TEST(ClipPlan, TrustsLevelsThatFitTheSound) {
    EXPECT_TRUE(LevelsCover(Sheet(30), {.periods = 31}, 2));
    EXPECT_FALSE(LevelsCover(Sheet(30), {.periods = 32}, 2)) << "sound without levels";
    EXPECT_FALSE(LevelsCover(Sheet(30), {.periods = 30}, 1)) << "another resolution";
    EXPECT_FALSE(LevelsCover(LevelSheet{}, {.periods = 0}, 2));
    EXPECT_FALSE(EndsEarly(Sheet(30), {.periods = 29}, 2)) << "the last period is cut short";
    EXPECT_TRUE(EndsEarly(Sheet(30), {.periods = 28}, 2));
    EXPECT_FALSE(EndsEarly(Sheet(30), {.periods = 28, .frames = 58}, 2));
    EXPECT_TRUE(EndsEarly(Sheet(30), {.periods = 27, .frames = 57}, 2));
}

TEST(Publication, ReckonsLongOnesWithoutOverflow) {
    Publication publication;
    publication.format = {.mp2 = false, .channels = 2, .shift = 2};
    ClipPlan hours;
    hours.levels.resize(20U * 3600 * 30);  // 30 h
    hours.samples = 44100ULL * 3600 * 30;
    publication.clips = {hours};
    EXPECT_EQ(publication.TotalFrames(), 4500000U);
    EXPECT_GT(publication.FileBytes(), std::uint64_t{4} << 30);
    publication.storedFrames = true;
    publication.format = {.mp2 = true, .bitrate = 256000, .frameBytes = 768, .shift = 2};
    // 4500000 frames of 768 bytes in blocks of 16 KiB.
    EXPECT_EQ(publication.ProgressSteps(), 210937U);
}

}  // namespace
}  // namespace orma
