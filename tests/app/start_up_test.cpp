#include "app/start_up.h"

#include <gtest/gtest.h>

#include "app/application_menu.h"
#include "app/desk.h"

namespace orma::test {
namespace {

TEST(StartUp, ReopensTheLastProjectWhereverItLiesWithGainVolumeAndSet) {
    Desk desk;
    const TempFolder elsewhere;
    desk.Configure([](SettingsRecord& settings) {
        settings.StartMode = 3;
        settings.InputOptions = 1;
        settings.Preset[0].name = u"mic";
    });
    {
        const auto app = desk.Start();
        ASSERT_TRUE(OpenOrCreateProject(*app, elsewhere.Path(u"pier.opr")));
        desk.Record(*app, 25);
        app->input.SetInputGain(12);
        app->input.SetOutputVolume(-3);
        ASSERT_TRUE(app->input.SelectByName(u"mic"));
        ASSERT_TRUE(ShutDown(*app));
    }
    const auto app = desk.Start();
    ASSERT_TRUE(OpenProjectAtStart(*app, u""));
    EXPECT_EQ(app->project.ProjectFilePath(), elsewhere.Path(u"pier.opr"));
    EXPECT_EQ(app->clips.Count(), 1);
    EXPECT_EQ(app->input.InputGainDb(), 12);
    EXPECT_EQ(app->input.OutputStep(), 17U);
    EXPECT_EQ(app->input.CurrentSetName(), u"mic");
    desk.Record(*app, 25);
    EXPECT_TRUE(desk.files.storage.Exists(elsewhere.Path(u"pier01.wav")))
        << "the writers record into the project's own folder";
    WriteFileBytes(desk.Path(u"bad.opr"), AsBytes("no project"));
    EXPECT_FALSE(MenuOpen(*app, desk.Path(u"bad.opr")));
    EXPECT_EQ(app->project.Name(), u"pier");
}

TEST(StartUp, RefusesAForeignProjectAndLeavesItAlone) {
    Desk desk;
    const Text path = desk.files.folder.Path(u"letter.opr");
    WriteFileBytes(path, AsBytes("Dear newsroom, this is no project."));
    const auto app = desk.Start();
    EXPECT_FALSE(OpenProjectAtStart(*app, path));
    EXPECT_EQ(desk.files.boxes.Texts(), std::vector<Text>{u"LoadProject Project Id"});
    desk.Record(*app, 25);
    ASSERT_TRUE(ShutDown(*app));
    const Bytes after = ReadFileBytes(path);
    EXPECT_EQ(std::string(after.begin(), after.end()), "Dear newsroom, this is no project.");
    EXPECT_EQ(app->clips.Count(), 1) << "what was recorded all the same is kept elsewhere";
}

TEST(StartUp, KnowsRecordingsByTheirNamesAsCardsWriteThem) {
    for (const char16_t* name : {u"/card/TALK00.WAV", u"talk00.wav", u"talk00.Mp2"})
        EXPECT_TRUE(IsRecordingName(name)) << ToUtf8(name);
    for (const char16_t* name : {u"city.opr", u"/notes.wav/talk", u"wav", u""})
        EXPECT_FALSE(IsRecordingName(name)) << ToUtf8(name);
}

TEST(StartUp, StartsTheCommandOfTheSettingsForProjectsThatTheUserMakes) {
    Desk desk;
    desk.Configure([](SettingsRecord& settings) {
        settings.PostCreateStep = 1;
        settings.PostCreateCommand = u"prepare";
        settings.StartMode = 2;
    });
    const Text path = desk.Path(u"pier.opr");
    auto app = desk.Start();
    WriteFileBytes(desk.Path(u"default.opr"), AsBytes("JOPR"));
    ASSERT_TRUE(OpenProjectAtStart(*app, u""));
    EXPECT_EQ(app->project.Name(), u"default1-");
    ASSERT_TRUE(OpenOrCreateProject(*app, path));
    desk.Record(*app, 30);
    ASSERT_TRUE(OpenOrCreateProject(*app, path));
    ASSERT_TRUE(RestoreProject(*app, desk.Path(u"gone.opr")));
    EXPECT_EQ(desk.desktop.asked, std::vector<Text>{u"prepare " + path});

    desk.desktop.starts = false;
    ASSERT_TRUE(OpenOrCreateProject(*app, desk.Path(u"city.opr")));
    EXPECT_EQ(desk.files.boxes.Texts(), std::vector<Text>{u"PostCreateCommand"});
    desk.desktop.asked.clear();
    app->settings.PostCreateStep = 0;
    ASSERT_TRUE(OpenOrCreateProject(*app, desk.Path(u"quay.opr")));
    EXPECT_TRUE(desk.desktop.asked.empty());
}

}  // namespace
}  // namespace orma::test
