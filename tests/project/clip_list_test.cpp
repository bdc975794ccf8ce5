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
    clip.place = place;
    return clip;
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
