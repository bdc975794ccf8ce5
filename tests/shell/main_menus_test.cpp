#include "shell/main_menus.h"

#include <gtest/gtest.h>

#include "shell/background_pages.h"

namespace orma::test {
namespace {

/// The texts of a menu; "-" for a separator, "#" for the bitmap.
Text Lines(const Menu& menu) {
    Text lines;
    for (const MenuItem& item : menu.items)
        lines += (item.kind == MenuItem::Kind::kSeparator ? u"-"
                  : item.kind == MenuItem::Kind::kBitmap  ? u"#"
                                                          : item.text) +
                 u"|";
    return lines;
}

TEST(Menus, EntriesOfTheSettingsStandAtTheirPlaces) {
    const MenuBar plain = BuildMenuBar(MainMenu::kEditor, {.imagePublishing = false});
    const MenuBar full = BuildMenuBar(MainMenu::kRecorder, {true, true, true, true, true});
    EXPECT_EQ(Lines(plain.menus[1]), u"Clip|Cliplist|");
    EXPECT_EQ(Lines(full.menus[1]),
              u"Clip|Cliplist|-|Image|-|Clip to File|Cliplist to File|-|Fast Clip|Fast Cliplist|");
    EXPECT_EQ(Lines(plain.menus[2]), u"Crop begin|Crop end|-|Cut begin|Cut end|-|Mark|");
    EXPECT_EQ(Lines(full.menus[2]), u"Mark|");
    EXPECT_EQ(u"Input options...|-|" + Lines(plain.menus[3]), Lines(full.menus[3]));
    EXPECT_TRUE(Lines(full.menus[0]).starts_with(u"#|-|Open project|"));
    EXPECT_EQ(full.menus[0].items.front().command, Command::kPublishClip);
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
        {Command::kEditText, {&nothing, &capturing}, {&writing, &job}},
        {Command::kOpenProject, {&nothing, &take}, {&capturing, &playing, &job}},
        {Command::kSaveSelection, {&take}, {&nothing, &unselected, &capturing, &playing}},
        {Command::kCopyToClipEditor, {&take, &recorder}, {&nothing, &capturing, &playing}},
        {Command::kPublishClip,
         {&take, &nothing, &noImages, &unselected, &clips},
         {&bare, &capturing, &playing}},
        {Command::kPublishClipList, {&take, &nothing, &clips}, {&bare, &capturing}},
        {Command::kImage, {&nothing}, {&noImages, &capturing, &playing}},
        {Command::kClipToFile, {&take, &unselected, &clips}, {&nothing, &playing}},
        {Command::kClipListToFile, {&take, &clips}, {&nothing, &playing}},
        {Command::kCropBegin, {&take, &playing}, {&nothing, &recorder, &capturing, &job}},
        {Command::kCutBegin, {&take, &playing, &beforeCut}, {&behindCut, &recorder, &capturing}},
        {Command::kCutEnd, {&take, &playing, &behindCut}, {&beforeCut, &recorder, &capturing}},
        {Command::kMark, {&take, &recorder, &playing}, {&nothing, &capturing, &job}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(int(one.command));
        for (const MenuState* const state : one.on)
            EXPECT_TRUE(IsEnabled(one.command, *state));
        for (const MenuState* const state : one.off)
            EXPECT_FALSE(IsEnabled(one.command, *state));
    }
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
