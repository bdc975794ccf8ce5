#include "app/start_up.h"

#include <gtest/gtest.h>

#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

class SilentHeadset : public HeadsetProbe {
  public:
    [[nodiscard]] int State(bool) override { return -1; }
};

class NoProgress : public PublishProgress {
  public:
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override { return false; }
};

/// The application on real files and a scripted microphone; a test may build it more than once, as
/// starting again does.
class Desk : public RecorderListener {
  public:
    [[nodiscard]] std::unique_ptr<Application> Start() {
        auto app = std::make_unique<Application>(Ports{.storage = files.storage,
                                                       .clock = clock,
                                                       .boxes = files.boxes,
                                                       .loop = loop,
                                                       .waves = waves,
                                                       .headset = headset},
                                                 FrontEnd{*this, progress}, files.folder.Path());
        LoadSettings(*app);
        return app;
    }

    /// A take of `periods` buffers, from the record button to the closed device.
    void Record(Application& app, int periods) {
        ASSERT_EQ(app.recorder.WavStartRecording(), 0);
        app.recorder.WavStartRecordSaving();
        const Bytes sound(2205 * 2 * app.audio.Channels(), 7);
        for (int i = 0; i < periods + 1; ++i)
            waves.in.Deliver(sound);
        app.recorder.WavStopRecording();
        loop.RunPending();
        ASSERT_TRUE(app.recorder.IsClosed());
    }

    /// Stores settings as the set-up program would.
    void Configure(const std::function<void(SettingsRecord&)>& change) {
        SettingsRecord record;
        SettingsStore store(files.services, files.folder.Path(), record);
        (void)store.LoadConfiguration();
        change(record);
        ASSERT_TRUE(store.SaveConfiguration());
    }

    TestFiles files;
    FakeClock clock;
    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    SilentHeadset headset;
    NoProgress progress;
};

TEST(StartUp, ContinuesTheProjectThatWasCurrent) {
    Desk desk;
    {
        const auto app = desk.Start();
        ASSERT_TRUE(OpenProjectAtStart(*app, u""));
        EXPECT_EQ(app->project.ProjectFilePath(), desk.files.folder.Path(u"default.opr"));
        desk.Record(*app, 40);
        ASSERT_TRUE(ShutDown(*app));
    }
    const auto app = desk.Start();
    ASSERT_TRUE(OpenProjectAtStart(*app, u" "));
    ASSERT_EQ(app->clips.Count(), 1);
    EXPECT_EQ(app->recording.name, u"default00");
    EXPECT_EQ(app->recording.length, app->recording.sheet.levels.size());
    EXPECT_GE(app->recording.length, 40U);
    EXPECT_EQ(desk.files.boxes.shown.size(), 0U);
}

TEST(StartUp, NumbersANewProjectPastThoseThatExist) {
    Desk desk;
    desk.Configure([](SettingsRecord& settings) {
        settings.StartMode = 2;
        settings.CurrentProjectName = u"city";
    });
    for (const TextView name : {u"city.opr", u"city1-.opr", u"city2-.opr"})
        WriteFileBytes(desk.files.folder.Path(name), AsBytes("JOPR"));
    const auto app = desk.Start();
    ASSERT_TRUE(OpenProjectAtStart(*app, u""));
    EXPECT_EQ(app->project.Name(), u"city3-");
    desk.Record(*app, 30);
    EXPECT_TRUE(desk.files.storage.Exists(desk.files.folder.Path(u"city3-00.wav")));
    EXPECT_TRUE(desk.files.storage.Exists(desk.files.folder.Path(u"city3-.opr")));
}

TEST(StartUp, ReopensTheLastProjectWhereverItLies) {
    Desk desk;
    const TempFolder elsewhere;
    desk.Configure([](SettingsRecord& settings) { settings.StartMode = 3; });
    {
        const auto app = desk.Start();
        ASSERT_TRUE(OpenOrCreateProject(*app, elsewhere.Path(u"pier.opr")));
        desk.Record(*app, 25);
        ASSERT_TRUE(ShutDown(*app));
    }
    const auto app = desk.Start();
    ASSERT_TRUE(OpenProjectAtStart(*app, u""));
    EXPECT_EQ(app->project.ProjectFilePath(), elsewhere.Path(u"pier.opr"));
    EXPECT_EQ(app->clips.Count(), 1);
    desk.Record(*app, 25);
    EXPECT_TRUE(desk.files.storage.Exists(elsewhere.Path(u"pier01.wav")))
        << "the writers record into the project's own folder";
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

TEST(ShutDownOrder, KeepsGainVolumeAndSetForTheNextStart) {
    Desk desk;
    desk.Configure([](SettingsRecord& settings) {
        settings.InputOptions = 1;
        settings.Preset[0].name = u"mic";
    });
    {
        const auto app = desk.Start();
        app->input.SetInputGain(12);
        app->input.SetOutputVolume(-3);
        ASSERT_TRUE(app->input.SelectByName(u"mic"));
        ASSERT_TRUE(ShutDown(*app));
    }
    const auto app = desk.Start();
    EXPECT_EQ(app->input.InputGainDb(), 12);
    EXPECT_EQ(app->input.OutputStep(), 17U);
    EXPECT_EQ(app->input.CurrentSetName(), u"mic");
}

}  // namespace
}  // namespace orma::test
