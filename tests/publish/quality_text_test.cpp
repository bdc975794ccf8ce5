#include "publish/quality_text.h"

#include <gtest/gtest.h>

#include "publish/peak_envelope.h"

namespace orma {
namespace {

/// A clip [begin, end) of a recording with these cuts and marks.
ClipPlan Clip(const std::string& title, std::uint32_t begin, std::uint32_t end,
              std::vector<RemovedRange> cuts = {}, std::vector<std::uint32_t> marks = {}) {
    ClipPlan clip;
    clip.title = title;
    clip.begin = begin;
    clip.end = end;
    clip.kept = KeptStretches(cuts, begin, end);
    clip.levels.resize(NetLength(cuts, begin, end));
    clip.cuts = std::move(cuts);
    clip.marks = std::move(marks);
    return clip;
}

TEST(QualityText, PlacesMarksByTheSoundThatIsKept) {
    // Begin 100 lies in the cut 90..110: the sound begins at 110. Kept: 110..150, 170..200.
    const std::vector<ClipPlan> clips = {
        Clip("one", 0, 20), Clip("two", 100, 200, {{90, 110, 0}, {150, 170, 0}, {300, 310, 0}},
                                 {50, 95, 105, 110, 149, 160, 170, 199, 200, 305})};
    EXPECT_EQ(QualityText(clips, 255, 2),
              "SM=00:00:00:0\r\n"
              "P=QP:MaxPeak:0.0dBFSL;0.0dBFSR\r\n"
              "C=N000, TS=00:00:01:0, T=two\r\n"
              "C=N001, TS=00:00:01:0, T=twoM3\r\n"   // on the kept begin
              "C=N002, TS=00:00:02:38, T=twoM4\r\n"  // the last period before the cut
              "C=N003, TS=00:00:03:0, T=twoM5\r\n"   // inside the cut: where the sound goes on
              "C=N004, TS=00:00:03:0, T=twoM6\r\n"   // on the cut's end
              "C=N005, TS=00:00:04:18, T=twoM7\r\n"  // the last period; 200 and 305 are outside
              "C=N006, TS=00:00:04:20, T=End\r\n");
}

TEST(CueTitle, IsTheTitleOrTheNameOnOneLine) {
    ClipEntry clip;
    clip.name = u"talk00";
    EXPECT_EQ(CueTitle(clip), "talk00");
    clip.title = u"Caf\u00E9 \u2192\r\nC=N001\t\u20AC\u007F";
    EXPECT_EQ(CueTitle(clip), "Caf\xE9 ?  C=N001 \x80 ");
}

TEST(PeakEnvelope, HoldsLinearPeaksAndTheFirstLargest) {
    std::vector<ClipPlan> clips(2);
    clips[0].levels = {79, 0, 30};  // silence, full scale, -10 dBFS
    clips[1].levels = {0, 60};      // full scale again, -30 dBFS
    const Bytes levl = PeakEnvelope(clips, {2009, 1, 1, 5, 9, 7, 3, 42}, 2).Encode();

    ASSERT_EQ(levl.size(), 136U);  // (5 & ~3) + 132
    EXPECT_EQ(LoadLe<std::uint32_t>(&levl[4]), 128U);
    EXPECT_EQ(LoadLe<std::uint32_t>(&levl[20]), 2400U);
    EXPECT_EQ(LoadLe<std::uint32_t>(&levl[28]), 5U);
    EXPECT_EQ(LoadLe<std::uint32_t>(&levl[32]), 1U);
    EXPECT_EQ(std::string(levl.begin() + 40, levl.begin() + 68),
              std::string("2009:01:05:09:07:03:042\0\0\0\0\0", 28));
    // i / 511 of -10 dB is 161.6, of -30 dB 16.2; the largest i of the level, halved.
    const Bytes peaks(levl.begin() + 128, levl.end());
    EXPECT_EQ(peaks[0], 0);
    EXPECT_EQ(peaks[1], 255);
    EXPECT_NEAR(peaks[2], 81, 3);
    EXPECT_EQ(peaks[3], 255);
    EXPECT_NEAR(peaks[4], 8, 1);
    EXPECT_EQ(Bytes(peaks.begin() + 5, peaks.end()), Bytes(3));
}

}  // namespace
}  // namespace orma
