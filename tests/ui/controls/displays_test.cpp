#include <gtest/gtest.h>

#include "ui/controls/name_win.h"
#include "ui/controls/prg_bar_win.h"
#include "ui/controls/static_text_win.h"
#include "ui/controls/total_nr_secs_win.h"
#include "ui/support/screen_rig.h"

namespace orma {
namespace {

constexpr Font kFont{.height = 12, .weight = FontWeight::kMedium, .turned = false};

bool ShowsLetters(const test::ScreenRig& rig, const Rect& place) {
    return rig.ShowsExactly(place, PixelOf(rig.skin.Colours().text));
}

TEST(StaticTextWinTest, StandsWhereItsAlignmentSaysTurnedTextFromTheLowerRightCorner) {
    const struct {
        bool turned;
        TextAlignment alignment;
        Rect letters;  // 6 wide each
    } cases[] = {
        {false, TextAlignment::kLeft, {40, 50, 18, 12}},
        {false, TextAlignment::kCentre, {81, 50, 18, 12}},
        {false, TextAlignment::kRight, {122, 50, 18, 12}},
        {true, TextAlignment::kLeft, {122, 58, 18, 12}},
        {true, TextAlignment::kCentre, {81, 58, 18, 12}},
        {true, TextAlignment::kRight, {40, 58, 18, 12}},
    };
    for (const auto& [turned, alignment, letters] : cases) {
        test::ScreenRig rig;
        Font font = kFont;
        font.turned = turned;
        StaticTextWin text(rig.scene, {40, 50, 100, 20}, font, TextGround::kNothing, alignment);
        text.SetText(u"abc");
        EXPECT_TRUE(ShowsLetters(rig, letters));
        EXPECT_TRUE(rig.ShowsExactly({}, PixelOf(rig.skin.Colours().textBackground)));
    }
}

TEST(NameWinTest, LeavesNothingOfTheNameBeforeAndShortensALongOne) {
    test::ScreenRig rig;
    NameWin name(rig.scene, Element::Name, kFont);  // 28, 13, 184 x 16
    name.SetName(u"interview.wav");                 // 78 wide
    EXPECT_TRUE(ShowsLetters(rig, {81, 13, 78, 12}));
    name.SetName(u"ab");
    EXPECT_TRUE(ShowsLetters(rig, {114, 13, 12, 12}));
    name.SetName(u"a-rather-long-name-of-a-project01");
    EXPECT_EQ(rig.ink.texts.back(), u"a-rather-long-...f-a-project01") << "30 of 6";
}

TEST(TotalNrSecsWinTest, TellsMinutesSecondsAndHundredths) {
    EXPECT_EQ(ToUtf8(TotalText(1234, 20)), "  1m:01s.70");
    EXPECT_EQ(ToUtf8(TotalText(0, 5)), "  0m:00s.00");
    EXPECT_EQ(ToUtf8(TotalText(5 * 60 - 1, 5)), "  0m:59s.80");
    EXPECT_EQ(ToUtf8(TotalText(0xFFFFFFFF, 5)), "14316557m:39s.00");
    EXPECT_EQ(ToUtf8(TotalText(7, 0)), "");
}

TEST(PrgBarWinTest, FillsFromTheLeftAndPaintsOnlyTheDifference) {
    test::ScreenRig rig({.pages = {492, 493}});
    PrgBarWin bar(rig.scene, Element::ProgressBar);  // 20, 108, 195 x 14
    bar.SetProgress(0, 0);
    bar.SetProgress(3'000'000'000U, 4'000'000'000U);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{20, 108, 146, 14}}));
    EXPECT_EQ(ToUtf8(bar.Value()), "75%");
    bar.SetProgress(9, 5);
    EXPECT_EQ(rig.TakeChanges(), (std::vector<Rect>{{166, 108, 49, 14}}));
    bar.SetProgress(1, 2);  // the next piece of work
    EXPECT_TRUE(rig.IsLitExactly({20, 108, 97, 14}));
}

}  // namespace
}  // namespace orma
