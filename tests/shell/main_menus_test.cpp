#include "shell/main_menus.h"

#include <gtest/gtest.h>

#include "shell/background_pages.h"

namespace orma::test {
namespace {

/// The texts of a menu; "-" for a separator, "#" for the bitmap.
std::vector<Text> Lines(const Menu& menu) {
    std::vector<Text> lines;
    for (const MenuItem& item : menu.items)
        lines.push_back(item.kind == MenuItem::Kind::kSeparator ? u"-"
                        : item.kind == MenuItem::Kind::kBitmap  ? u"#"
                                                                : item.text);
    return lines;
}

using Texts = std::vector<Text>;

TEST(Menus, EntriesOfTheSettingsStandAtTheirPlaces) {
    const MenuBar plain = BuildMenuBar(MainMenu::kEditor, {.imagePublishing = false});
    ASSERT_EQ(plain.menus.size(), 4U);
    EXPECT_EQ(plain.menus[0].title, u"  File  ");
    EXPECT_EQ(plain.menus[1].title, u"  Publish  ");
    EXPECT_EQ(plain.menus[2].title, u"  Edit  ");
    EXPECT_EQ(plain.menus[3].title, u"  View  ");
    EXPECT_EQ(Lines(plain.menus[0]).front(), u"Publish Clip...");
    EXPECT_EQ(Lines(plain.menus[0]).back(), u"Exit");
    EXPECT_EQ(Lines(plain.menus[1]), (Texts{u"Clip", u"Cliplist"}));
    EXPECT_EQ(Lines(plain.menus[2]),
              (Texts{u"Crop begin", u"Crop end", u"-", u"Cut begin", u"Cut end", u"-", u"Mark"}));
    EXPECT_EQ(Lines(plain.menus[3]).front(), u"Record");

    const MenuBar full = BuildMenuBar(MainMenu::kRecorder, {true, true, true, true, true});
    EXPECT_EQ(Lines(full.menus[0]).front(), u"#");
    EXPECT_EQ(full.menus[0].items.front().command, Command::kPublishClip);
    EXPECT_EQ(full.menus[0].items.size(), plain.menus[0].items.size());
    EXPECT_EQ(Lines(full.menus[1]),
              (Texts{u"Clip", u"Cliplist", u"-", u"Image", u"-", u"Clip to File",
                     u"Cliplist to File", u"-", u"Fast Clip", u"Fast Cliplist"}));
    for (const std::size_t place : {5U, 6U, 8U, 9U})
        EXPECT_FALSE(full.menus[1].items[place].enabled) << place;
    EXPECT_TRUE(full.menus[1].items[3].enabled);
    EXPECT_EQ(Lines(full.menus[2]), Texts{u"Mark"});
    EXPECT_EQ(full.menus[3].items[0].command, Command::kInputOptions);
    EXPECT_EQ(full.menus[3].items[1].kind, MenuItem::Kind::kSeparator);
    EXPECT_EQ(full.menus[3].items.size(), plain.menus[3].items.size() + 2);
}

TEST(Menus, TheMarkEntryIsMadeAnewAtTheEnd) {
    Menu edit{u"  Edit  ",
              {{.command = Command::kMark, .text = u"Mark", .enabled = false},
               {.command = Command::kCutEnd, .text = u"Cut end"}}};
    RenewMarkItem(edit, true);
    EXPECT_EQ(Lines(edit), (Texts{u"Cut end", u"Delete marker"}));
    EXPECT_FALSE(edit.items.back().enabled);
    RenewMarkItem(edit, false);
    EXPECT_EQ(Lines(edit), (Texts{u"Cut end", u"Mark"}));
}

TEST(Menus, CommandsAreEnabledWhenTheyMakeSense) {
    const MenuState nothing;
    const MenuState take{.screen = ScreenIndex::kEditor,
                         .recorded = true,
                         .selection = true,
                         .cutBegin = true,
                         .cutEnd = true,
                         .clips = true};
    const auto with = [&take](auto change) {
        MenuState state = take;
        change(state);
        return state;
    };
    const MenuState capturing = with([](MenuState& s) { s.capturing = true; });
    const MenuState playing = with([](MenuState& s) { s.playing = true; });
    const MenuState recorder = with([](MenuState& s) { s.screen = ScreenIndex::kRecorder; });
    const MenuState job = with([](MenuState& s) { s.screen = ScreenIndex::kProgress; });
    const MenuState unselected = with([](MenuState& s) {
        s.selection = false;
        s.imagePublishing = false;
    });
    const MenuState noImages = with([](MenuState& s) { s.imagePublishing = false; });
    const MenuState bare{.imagePublishing = false};
    const MenuState clips{.screen = ScreenIndex::kClipEditor, .imagePublishing = false};
    const MenuState behindCut = with([](MenuState& s) { s.cutBegin = false; });
    const MenuState beforeCut = with([](MenuState& s) { s.cutEnd = false; });
    const MenuState writing = with([](MenuState& s) { s.textEditor = true; });

    struct Case {
        Command command;
        std::vector<const MenuState*> on;
        std::vector<const MenuState*> off;
    };
    const Case cases[] = {
        {Command::kExit, {&nothing, &capturing, &playing}, {&job}},
        {Command::kRecorder, {&nothing, &capturing}, {&job}},
        {Command::kEditText, {&nothing, &capturing}, {&writing, &job}},
        {Command::kOpenProject, {&nothing, &take}, {&capturing, &playing, &job}},
        {Command::kNewProject, {&nothing}, {&capturing, &playing}},
        {Command::kDelete, {&nothing}, {&capturing, &playing}},
        {Command::kSaveSelection, {&take}, {&nothing, &unselected, &capturing, &playing}},
        {Command::kCopyToClipEditor, {&take, &recorder}, {&nothing, &capturing, &playing}},
        {Command::kPublishClip,
         {&take, &nothing, &noImages, &unselected, &clips},
         {&bare, &capturing, &playing}},
        {Command::kPublishClipList, {&take, &nothing, &clips}, {&bare, &capturing}},
        {Command::kImage, {&nothing}, {&noImages, &capturing, &playing}},
        {Command::kClipToFile, {&take, &unselected, &clips}, {&nothing, &playing}},
        {Command::kClipListToFile, {&take, &clips}, {&nothing, &playing}},
        {Command::kFastClip, {&take, &clips}, {&nothing, &capturing}},
        {Command::kFastClipList, {&take, &clips}, {&nothing, &capturing}},
        {Command::kCropBegin, {&take, &playing}, {&nothing, &recorder, &capturing, &job}},
        {Command::kCropEnd, {&take, &playing}, {&nothing, &recorder, &capturing}},
        {Command::kCutBegin, {&take, &playing, &beforeCut}, {&behindCut, &recorder, &capturing}},
        {Command::kCutEnd, {&take, &playing, &behindCut}, {&beforeCut, &recorder, &capturing}},
        {Command::kMark, {&take, &recorder, &playing}, {&nothing, &capturing, &job}},
        {Command::kRecord, {&nothing, &take}, {&capturing, &playing}},
    };
    for (const Case& one : cases) {
        for (std::size_t i = 0; i < one.on.size(); ++i)
            EXPECT_TRUE(IsEnabled(one.command, *one.on[i])) << int(one.command) << " on " << i;
        for (std::size_t i = 0; i < one.off.size(); ++i)
            EXPECT_FALSE(IsEnabled(one.command, *one.off[i])) << int(one.command) << " off " << i;
    }
    MenuBar bar = BuildMenuBar(MainMenu::kEditor, {});
    EnableItems(bar, take);
    EXPECT_TRUE(bar.menus[2].items.back().enabled);
    EnableItems(bar, {});
    EXPECT_FALSE(bar.menus[2].items.back().enabled);
}

TEST(BackgroundPages, FollowTheSettingsAndADisplayThatIsHeldUpright) {
    struct Case {
        Size display;
        std::uint8_t button;
        int normal, pressed;
        std::uint32_t landscapeAfter;
    };
    for (const Case& one : {Case{{480, 640}, 1, 523, 524, 1}, Case{{480, 640}, 0, 521, 522, 1},
                            Case{{640, 480}, 1, 509, 510, 0}, Case{{640, 480}, 0, 494, 495, 0},
                            Case{{480, 480}, 0, 521, 522, 1}}) {
        SettingsRecord settings;
        settings.LandscapeSkin = 1;
        settings.PublishClipButton = one.button;
        const Pages pages = ChooseBackgroundPages(one.display, settings);
        EXPECT_EQ(pages.normal, one.normal);
        EXPECT_EQ(pages.pressed, one.pressed);
        EXPECT_EQ(settings.LandscapeSkin, one.landscapeAfter);
    }
}

}  // namespace
}  // namespace orma::test
