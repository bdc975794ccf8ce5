#include <gtest/gtest.h>

#include "ui/controls/name_win.h"
#include "ui/controls/rec_time_win.h"
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

TEST(StaticTextWinTest, LeavesNothingOfTheTextBefore) {
    for (const TextGround ground : {TextGround::kPanel, TextGround::kPage, TextGround::kNothing}) {
        test::ScreenRig rig;
        rig.canvas.Fill({0, 0, 240, 270}, Colour{1, 2, 3});  // what stood there
        StaticTextWin text(rig.scene, kPlace, kFont, ground);
        text.PresetText(u"much too long for its place");
        rig.TakeChanges();
        text.Paint();
        EXPECT_TRUE(rig.ShowsExactly({40, 50, 100, 12}, Letters(rig)));
        const int below = kPlace.y + 15;
        EXPECT_EQ(rig.At(40, below) == Panel(rig), ground == TextGround::kPanel);
        EXPECT_EQ(rig.IsDark(40, below), ground == TextGround::kPage);

        text.SetText(u"ab");
        EXPECT_TRUE(rig.ShowsExactly({40, 50, 12, 12}, Letters(rig)));
        rig.TakeChanges();
        text.SetText(u"ab");
        EXPECT_TRUE(rig.TakeChanges().empty());
        text.SetText(u"");
        const Pixel page = test::PlainBitmaps::PixelOfBitmap(rig.scene.pages.normal);
        EXPECT_TRUE(rig.ShowsExactly(kPlace, page));
    }
}

TEST(NameWinTest, IsOpaqueBehindItsLettersAloneWhichVanishWithTheName) {
    test::ScreenRig rig;
    NameWin name(rig.scene, Element::Name, kFont);  // 28, 13, 184 x 16
    name.SetName(u"interview.wav");                 // 78 wide
    EXPECT_TRUE(rig.ShowsExactly({81, 13, 78, 12}, Letters(rig)));
    EXPECT_EQ(rig.CountOf(Panel(rig)), 0);  // all of it lies behind letters
    name.SetName(u"ab");
    EXPECT_TRUE(rig.ShowsExactly({114, 13, 12, 12}, Letters(rig)));
    EXPECT_EQ(rig.CountOf(test::PlainBitmaps::PixelOfBitmap(494)), 240 * 270 - 12 * 12);
    rig.TakeChanges();
    name.SetName(u"ab");
    EXPECT_TRUE(rig.TakeChanges().empty());
    name.SetName(u"a-rather-long-name-of-a-project01");
    EXPECT_EQ(rig.ink.texts.back().text, u"a-rather-long-...f-a-project01") << "30 of 6";
    EXPECT_EQ(ToUtf8(name.Value()), "a-rather-long-name-of-a-project01");
}

TEST(TotalNrSecsWinTest, TellsMinutesSecondsAndHundredths) {
    EXPECT_EQ(ToUtf8(TotalText(1234, 20)), "  1m:01s.70");
    EXPECT_EQ(ToUtf8(TotalText(0, 5)), "  0m:00s.00");
    EXPECT_EQ(ToUtf8(TotalText(5 * 60 - 1, 5)), "  0m:59s.80");
    EXPECT_EQ(ToUtf8(TotalText(0xFFFFFFFF, 5)), "14316557m:39s.00");
    EXPECT_EQ(ToUtf8(TotalText(7, 0)), "");
}

TEST(TotalNrSecsWinTest, EndsAtTheRightOnePixelAboveItsRectangleWhichItCovers) {
    test::ScreenRig rig;
    TotalNrSecsWin total(rig.scene, Element::EditTotalTime, kFont);  // 126, 105, 74 x 14
    total.ShowTotal(1234, 20);
    ASSERT_EQ(rig.ink.texts.size(), 1U);
    EXPECT_EQ(rig.ink.texts[0].origin, (Point{200 - 66, 104}));
    EXPECT_TRUE(rig.ShowsExactly({134, 105, 66, 11}, Letters(rig)));
    EXPECT_EQ(rig.CountOf(Panel(rig)), 74 * 14 - 66 * 11);
    rig.TakeChanges();
    total.ShowTotal(1234, 20);
    EXPECT_TRUE(rig.TakeChanges().empty());
}

TEST(RecTimeWinTest, TimesAndMarksTakeTurnsOnACoveredRectangle) {
    test::ScreenRig rig;
    RecTimeWin time(rig.scene, Element::RecTime, kFont);  // 50, 80, 170 x 28
    time.Paint();
    EXPECT_TRUE(rig.ShowsExactly({50, 80, 170, 28}, Panel(rig)));
    time.ShowPeriods(72005, 20);
    time.ShowPeriods(72005, 20);
    time.ShowText(u"  Mark   3 ");
    time.ShowPeriods(72005, 20);
    EXPECT_EQ(rig.ink.Texts(), (std::vector<Text>{u" 60m:00s.25", u"  Mark   3 ", u" 60m:00s.25"}));
    EXPECT_EQ(rig.ink.texts[0].origin, (Point{50, 79}));
    EXPECT_TRUE(rig.ShowsExactly({50, 80, 66, 11}, Letters(rig)));
}

TEST(RecTimeWinTest, ATimeOfDayIsNotCutOff) {
    for (const bool turned : {false, true}) {
        test::ScreenRig rig;
        const Font font{.height = 38, .weight = FontWeight::kSemiBold, .turned = turned};
        RecTimeWin clock(rig.scene, Element::RecTime, font, RecTimeWin::Mode::kClock);
        clock.ShowClock(9, 5, 0);  // 11 * 19 = 209 wide
        EXPECT_EQ(ToUtf8(clock.Value()), "09h:05m:00s");
        const Rect box = turned ? Rect{11, 80, 209, 28} : Rect{50, 80, 190, 28};  // of 240
        EXPECT_TRUE(rig.ShowsExactly(box, Letters(rig)));

        RecTimeWin elapsed(rig.scene, Element::RecTime, font);
        rig.PaintPage();
        elapsed.ShowText(u"09h:05m:00s");
        EXPECT_TRUE(rig.ShowsExactly({50, 80, 170, 28}, Letters(rig)));
    }
}

}  // namespace
}  // namespace orma
