#include "project/clip_list.h"

#include <gtest/gtest.h>

#include "project/clip_texts.h"
#include "project/missing_clips.h"

namespace orma {
namespace {

ClipEntry Named(const Text& name, std::uint32_t place = 0) {
    ClipEntry clip;
    clip.name = name;
    clip.folder = u"/p/";
    clip.length = 10;
    clip.place = place;
    return clip;
}

Text Names(const ClipList& clips) {
    Text names;
    for (std::int32_t i = 0; i < clips.Count(); ++i)
        names += clips.At(i).name;
    return names;
}

struct ClipListTest : testing::Test {
    ClipListTest() {
        for (const auto* name : {u"a", u"b", u"c"})
            clips.Append(Named(name));
    }
    ClipList clips;
};

TEST_F(ClipListTest, InsertsAtTheCurrentIndexOrAtTheEndAndForgetsTheClipsEnd) {
    ClipEntry clip = Named(u"x");
    clip.end = 5;
    EXPECT_EQ(clips.Insert(clip), 3);
    EXPECT_EQ(clips.At(3).end, 0U);
    ASSERT_TRUE(clips.SetCurrent(1));
    EXPECT_EQ(clips.Insert(Named(u"y")), 1);
    EXPECT_EQ(Names(clips), u"aybcx");
    EXPECT_EQ(clips.TotalLength(), 50U);
}

TEST_F(ClipListTest, RemovingTheCurrentClipMovesOnToTheNextOrTheNewLast) {
    clips.RemoveCurrent();  // none is current
    EXPECT_EQ(clips.Count(), 3);
    ASSERT_TRUE(clips.SetCurrent(1));
    clips.RemoveCurrent();
    EXPECT_EQ(clips.Current()->name, u"c");
    clips.RemoveCurrent();
    EXPECT_EQ(clips.Current()->name, u"a");
    clips.RemoveCurrent();
    EXPECT_EQ(clips.CurrentIndex(), -1);
    EXPECT_EQ(clips.Current(), nullptr);
}

TEST_F(ClipListTest, MovesTheCurrentClipButNotBeyondTheEnds) {
    ASSERT_TRUE(clips.SetCurrent(0));
    clips.MoveCurrentUp();
    EXPECT_EQ(Names(clips), u"abc");
    clips.MoveCurrentDown();
    clips.MoveCurrentDown();
    clips.MoveCurrentDown();
    EXPECT_EQ(Names(clips), u"bca");
    EXPECT_EQ(clips.CurrentIndex(), 2);
    clips.MoveCurrentUp();
    EXPECT_EQ(Names(clips), u"bac");
    EXPECT_FALSE(clips.SetCurrent(3));
    EXPECT_FALSE(clips.SetCurrent(-1));
    EXPECT_EQ(clips.CurrentIndex(), 1);
}

TEST_F(ClipListTest, RemovesTheClipsOfARecordingAndFollowsTheCurrentOne) {
    clips.Append(Named(u"a"));
    ASSERT_TRUE(clips.SetCurrent(2));
    EXPECT_TRUE(clips.RemoveClipsOf(u"\\p\\a"));  // a project file from another system
    EXPECT_EQ(Names(clips), u"bc");
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_FALSE(clips.RemoveClipsOf(u"/p/a"));
    EXPECT_TRUE(clips.RemoveClipsOf(u"/p/c"));
    EXPECT_EQ(clips.CurrentIndex(), -1);
}

TEST(MissingClips, KeepTheirPlaceBetweenTheirNeighbours) {
    // Loaded were M a N b O P c; the capital letters are missing.
    ClipList clips;
    clips.Append(Named(u"a", 2));
    clips.Append(Named(u"b", 4));
    clips.Append(Named(u"c", 7));
    const std::vector<ClipEntry> missing = {Named(u"M", 1), Named(u"N", 3), Named(u"O", 5),
                                            Named(u"P", 6)};
    const auto merged = [&] {
        Text names;
        for (const ClipEntry& clip : WithMissingClips(clips, missing).clips)
            names += clip.name;
        return names;
    };
    EXPECT_EQ(merged(), u"MaNbOPc");
    clips.Append(Named(u"x"));
    ASSERT_TRUE(clips.SetCurrent(1));
    clips.MoveCurrentUp();  // b goes in front of a, with its followers
    EXPECT_EQ(merged(), u"MbOPaNcx");
    clips.RemoveCurrent();  // b's followers now follow a
    EXPECT_EQ(merged(), u"MaNOPcx");
    clips.Clear();
    EXPECT_EQ(merged(), u"MNOP");
}

TEST(ClipTexts, FollowTheDescriptionMode) {
    ClipEntry clip = Named(u"talk00");
    clip.lengthSeconds = 6005;
    clip.fileTime = {.year = 2024, .month = 3, .day = 7, .hour = 9, .minute = 5};
    UpdateClipTexts(clip, 0);
    EXPECT_EQ(clip.lengthText, u"100:05");
    EXPECT_EQ(clip.timeDateText, u" 9:05  7/03/2024");
    EXPECT_EQ(clip.location, u"/p/talk00");
    EXPECT_EQ(clip.description, u"100:05  9:05  7/03/2024");
    EXPECT_EQ(RecordingLabel(clip, 0), clip.description);
    UpdateClipTexts(clip, 1);
    EXPECT_EQ(clip.description, u" 9:05  7/03/2024");
    UpdateClipTexts(clip, 2);
    EXPECT_EQ(clip.description, u" 7/03/2024 /p/");
    EXPECT_EQ(RecordingLabel(clip, 2), u" 7/03/2024 talk00");
    UpdateClipTexts(clip, 3);
    EXPECT_EQ(clip.description, u"/p/");
    EXPECT_EQ(RecordingLabel(clip, 9), u"talk00");
}

TEST(ClipTexts, TellTheTotalLengthToTheHundredth) {
    EXPECT_EQ(TotalLengthText(2000, 5), u" 6:40s.00");
    EXPECT_EQ(TotalLengthText(2000 * 4 + 19, 20), u" 6:40s.95");
    EXPECT_EQ(TotalLengthText(0, 10), u" 0:00s.00");
}

}  // namespace
}  // namespace orma
