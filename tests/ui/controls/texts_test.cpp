#include <gtest/gtest.h>

#include "ui/controls/name_win.h"
#include "ui/controls/static_text_win.h"
#include "ui/controls/total_nr_secs_win.h"
#include "ui/support/screen_rig.h"

namespace orma {
namespace {

constexpr Rect kPlace{40, 50, 100, 20};
constexpr Font kFont{
    .height = 12, .weight = FontWeight::kMedium, .turned = false};  // letters 6 wide
constexpr Font kTurned{.height = 12, .weight = FontWeight::kMedium, .turned = true};

Pixel Letters(const test::ScreenRig& rig) {
    return PixelOf(rig.skin.Colours().text);
}
Pixel Panel(const test::ScreenRig& rig) {
    return PixelOf(rig.skin.Colours().textBackground);
}

TEST(StaticTextWinTest, StandsWhereItsAlignmentSaysTurnedTextFromTheLowerRightCorner) {
    struct Case {
        Font font;
        TextAlignment alignment;
        Rect letters;
    };
    const Case cases[] = {
        {kFont, TextAlignment::kLeft, {40, 50, 18, 12}},
        {kFont, TextAlignment::kCentre, {81, 50, 18, 12}},
        {kFont, TextAlignment::kRight, {122, 50, 18, 12}},
        {kTurned, TextAlignment::kLeft, {122, 58, 18, 12}},
        {kTurned, TextAlignment::kCentre, {81, 58, 18, 12}},
        {kTurned, TextAlignment::kRight, {40, 58, 18, 12}},
    };
    for (const Case& example : cases) {
        test::ScreenRig rig;
        StaticTextWin text(rig.scene, kPlace, example.font, TextGround::kNothing,
                           example.alignment);
        text.SetText(u"abc");
        EXPECT_TRUE(rig.ShowsExactly(example.letters, Letters(rig)));
        EXPECT_EQ(rig.CountOf(Panel(rig)), 0);
    }
}

TEST(NameWinTest, LeavesNothingOfTheNameBeforeAndShortensALongOne) {
    test::ScreenRig rig;
    NameWin name(rig.scene, Element::Name, kFont);  // 28, 13, 184 x 16
    name.SetName(u"interview.wav");                 // 78 wide
    EXPECT_TRUE(rig.ShowsExactly({81, 13, 78, 12}, Letters(rig)));
    name.SetName(u"ab");
    EXPECT_TRUE(rig.ShowsExactly({114, 13, 12, 12}, Letters(rig)));
    name.SetName(u"a-rather-long-name-of-a-project01");
    EXPECT_EQ(rig.ink.texts.back().text, u"a-rather-long-...f-a-project01") << "30 of 6";
}

TEST(TotalNrSecsWinTest, TellsMinutesSecondsAndHundredths) {
    EXPECT_EQ(ToUtf8(TotalText(1234, 20)), "  1m:01s.70");
    EXPECT_EQ(ToUtf8(TotalText(0, 5)), "  0m:00s.00");
    EXPECT_EQ(ToUtf8(TotalText(5 * 60 - 1, 5)), "  0m:59s.80");
    EXPECT_EQ(ToUtf8(TotalText(0xFFFFFFFF, 5)), "14316557m:39s.00");
    EXPECT_EQ(ToUtf8(TotalText(7, 0)), "");
}

}  // namespace
}  // namespace orma
