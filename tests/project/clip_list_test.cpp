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
    clip.end = 5;
    clip.place = place;
    return clip;
}

Text NamesIn(const std::vector<ClipEntry>& clips) {
    Text names;
    for (const ClipEntry& clip : clips)
        names += clip.name;
    return names;
}

struct ClipListTest : testing::Test {
    ClipListTest() {
        for (const auto* name : {u"a", u"b", u"c"})
            clips.Append(Named(name));
    }

    [[nodiscard]] Text Order() const { return NamesIn(WithMissingClips(clips, {}).clips); }

    ClipList clips;
};

TEST_F(ClipListTest, ChangesAtTheCurrentClipAndFollowsIt) {
    EXPECT_EQ(clips.Insert(Named(u"x")), 3);  // none is current: at the end
    EXPECT_EQ(clips.At(3).end, 0U);
    ASSERT_TRUE(clips.SetCurrent(1));
    EXPECT_EQ(clips.Insert(Named(u"y")), 1);
    EXPECT_EQ(Order(), u"aybcx");
    clips.MoveCurrentUp();
    clips.MoveCurrentUp();
    EXPECT_EQ(Order(), u"yabcx");
    EXPECT_FALSE(clips.SetCurrent(5));
    EXPECT_FALSE(clips.SetCurrent(-1));
    clips.RemoveCurrent();
    EXPECT_EQ(clips.Current()->name, u"a");
    ASSERT_TRUE(clips.SetCurrent(2));
    clips.MoveCurrentDown();
    clips.MoveCurrentDown();
    EXPECT_EQ(Order(), u"abxc");
    clips.RemoveCurrent();
    EXPECT_EQ(clips.Current()->name, u"x");
}

TEST_F(ClipListTest, RemovesTheClipsOfARecordingAndFollowsTheCurrentOne) {
    clips.Append(Named(u"a"));
    ASSERT_TRUE(clips.SetCurrent(2));
    EXPECT_TRUE(clips.RemoveClipsOf(u"\\p\\a"));  // a project file from another system
    EXPECT_EQ(Order(), u"bc");
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
    const auto merged = [&] { return NamesIn(WithMissingClips(clips, missing).clips); };
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
    const Text texts[] = {u"100:05  9:05  7/03/2024", u" 9:05  7/03/2024", u" 7/03/2024 /p/",
                          u"/p/"};
    for (std::uint32_t mode = 0; mode < std::size(texts); ++mode) {
        ClipEntry clip = Named(u"talk00");
        clip.lengthSeconds = 6005;
        clip.fileTime = {.year = 2024, .month = 3, .day = 7, .hour = 9, .minute = 5};
        UpdateClipTexts(clip, mode);
        EXPECT_EQ(clip.description, texts[mode]);
        EXPECT_EQ(RecordingLabel(clip, mode), mode == 2   ? u" 7/03/2024 talk00"
                                              : mode == 3 ? u"talk00"
                                                          : clip.description);
    }
    EXPECT_EQ(TotalLengthText(2000 * 4 + 19, 20), u" 6:40s.95");
}

}  // namespace
}  // namespace orma
