#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desk.h"
#include "audio/files/vu_file.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// In a project of MP2 or not, stereo or not.
class RecoveryTest : public ::testing::TestWithParam<std::tuple<bool, bool>> {
  protected:
    RecoveryTest() {
        desk_.Configure([&](SettingsRecord& record) {
            record.RecordMp2 = mp2_;
            record.Stereo = std::get<1>(GetParam());
        });
        app_ = desk_.Start();
        EXPECT_TRUE(OpenOrCreateProject(*app_, Path(u"talk.opr")));
    }

    [[nodiscard]] Text Path(TextView name) const { return desk_.Path(name); }
    [[nodiscard]] Text Sound(TextView name) const {
        return Text(name) + (mp2_ ? u".mp2" : u".wav");
    }

    /// A new start in the folder that a kill would leave now. The application stands on `after_`,
    /// and is gone before the next such start.
    std::unique_ptr<Application> StartAfterKill() {
        using std::filesystem::copy_options;
        constexpr auto kOver = copy_options::overwrite_existing | copy_options::recursive;
        after_ = std::make_unique<Desk>();
        std::filesystem::copy(desk_.files.folder.Native(), after_->files.folder.Native(), kOver);
        std::filesystem::remove(after_->files.folder.Native(u"OrmaIni.sup"));  // other defaults
        (void)after_->files.storage.SetLastWriteTime(after_->Path(Sound(u"talk00")), kLate);
        return StartAgain();
    }
    /// One more start in that folder.
    std::unique_ptr<Application> StartAgain(TextView project = u"talk.opr") {
        auto app = after_->Start();
        EXPECT_TRUE(OpenOrCreateProject(*app, after_->Path(project)));
        return app;
    }
    [[nodiscard]] bool LeftBehind(TextView name) const { return after_->Exists(name); }
    [[nodiscard]] Bytes After(const Text& name) const { return ReadFileBytes(after_->Path(name)); }

    static constexpr FileTime kLate{std::chrono::seconds(1231150830)};
    const bool mp2_ = std::get<0>(GetParam());
    Desk desk_;
    std::unique_ptr<Desk> after_;
    std::unique_ptr<Application> app_;
};

INSTANTIATE_TEST_SUITE_P(Formats, RecoveryTest,
                         ::testing::Combine(::testing::Bool(), ::testing::Bool()));

TEST_P(RecoveryTest, AFirstTakeThatIsKilledComesBackWithItsMarksAndAClip) {
    desk_.Begin(*app_, 100);
    ASSERT_TRUE(app_->recorder.MarkWhileRecording());
    desk_.waves.in.Deliver(Bytes(4410 * app_->audio.Channels(), 9));
    const auto app = StartAfterKill();
    ASSERT_THAT(after_->files.boxes.shown, SizeIs(1));
    EXPECT_EQ(after_->files.boxes.shown[0].icon, BoxIcon::kInformation);
    EXPECT_EQ(after_->files.boxes.shown[0].text,
              u"Recovered after an interruption:\ntalk00  00:05");
    ASSERT_EQ(app->clips.Count(), 1);
    EXPECT_EQ(std::tuple(app->audio.mp2, app->audio.stereo), GetParam());
    // The encoder keeps less than a frame to itself.
    EXPECT_GE(app->clips.At(0).length, mp2_ ? 100U : 101U);
    EXPECT_THAT(app->recording.sheet.marks, ElementsAre(100));
    EXPECT_EQ(app->recording.sheet.levels.size(), app->clips.At(0).length);
    EXPECT_FALSE(LeftBehind(u"talk00.rec"));
    EXPECT_TRUE(LeftBehind(u"talk.opr"));
    FileTime time;
    ASSERT_EQ(after_->files.storage.LastWriteTime(after_->Path(Sound(u"talk00")), time), 0U);
    EXPECT_EQ(time, kLate);

    // What came back is what an undisturbed take has up to there.
    const Bytes recovered = After(Sound(u"talk00"));
    desk_.Stop(*app_);
    const Bytes whole = ReadFileBytes(Path(Sound(u"talk00")));
    ASSERT_LE(recovered.size(), whole.size());
    const long header = mp2_ ? 0 : 44;
    EXPECT_TRUE(std::equal(recovered.begin() + header, recovered.end(), whole.begin() + header));
    if (!mp2_) {
        std::vector<std::uint8_t> levels = app_->recording.sheet.levels;
        levels.resize(app->recording.sheet.levels.size());
        EXPECT_EQ(app->recording.sheet.levels, levels);
    }

    // The next take goes on behind it.
    after_->Record(*app, 40);
    EXPECT_EQ(app->clips.At(1).name, u"talk01");
}

TEST_P(RecoveryTest, AKillBetweenTheTakesEndAndTheProjectFileLosesNoClip) {
    desk_.Record(*app_, 40);
    EXPECT_FALSE(desk_.Exists(u"talk00.rec"));
    // The project file cannot be replaced: the journal waits for a start that can.
    ASSERT_EQ(desk_.files.storage.CreateFolder(Path(u"talk.opr.tmp")), 0U);
    desk_.Record(*app_, 60);
    EXPECT_TRUE(desk_.Exists(u"talk01.rec"));
    std::filesystem::remove(desk_.files.folder.Native(u"talk.opr.tmp"));
    auto app = StartAfterKill();
    ASSERT_EQ(app->clips.Count(), 2);
    EXPECT_EQ(app->clips.At(1).length, 61U);
    EXPECT_EQ(app->recording.sheet.levels.size(), 61U);
    EXPECT_FALSE(LeftBehind(u"talk01.rec"));

    // The other way round, the clip is there already: it is not added again.
    ASSERT_TRUE(app_->project.SaveProject());
    app.reset();
    app = StartAfterKill();
    EXPECT_EQ(app->clips.Count(), 2);
    EXPECT_FALSE(LeftBehind(u"talk01.rec"));
    EXPECT_THAT(after_->files.boxes.shown, IsEmpty());
}

TEST_P(RecoveryTest, ATakeWithoutAnySoundLeavesNothing) {
    desk_.Begin(*app_, 0);
    ASSERT_TRUE(desk_.Exists(u"talk00.rec"));
    const auto app = StartAfterKill();
    EXPECT_EQ(app->clips.Count(), 0);
    for (const Text& name : {Text(u"talk00.rec"), Sound(u"talk00"), Text(u"talk.opr")})
        EXPECT_FALSE(LeftBehind(name));
}

TEST_P(RecoveryTest, ATakeOfOnePeriodIsKeptAndLookedAtOnce) {
    desk_.Begin(*app_, 1);
    auto app = StartAfterKill();
    // No reader takes so little MP2 for a recording.
    const bool playable = !mp2_;
    EXPECT_EQ(app->clips.Count(), playable ? 1 : 0);
    EXPECT_THAT(app->project.LeftAlone(), SizeIs(playable ? 0 : 1));
    EXPECT_FALSE(LeftBehind(u"talk00.rec"));
    EXPECT_GE(After(Sound(u"talk00")).size(), playable ? 4454U : 192U);
    app.reset();
    app = StartAgain();
    EXPECT_THAT(app->project.LeftAlone(), IsEmpty());
    EXPECT_FALSE(After(Sound(u"talk00")).empty());
}

TEST_P(RecoveryTest, ATakeThatAnotherProgramRecordsIsLeftToIt) {
    desk_.Begin(*app_, 50);
    auto second = desk_.Start();
    EXPECT_TRUE(OpenOrCreateProject(*second, Path(u"talk.opr")));
    EXPECT_EQ(second->clips.Count(), 0);
    EXPECT_TRUE(desk_.Exists(u"talk00.rec"));
    EXPECT_EQ(second->project.PrepareTake(), u"talk01");
    second.reset();
    desk_.Stop(*app_);
    EXPECT_EQ(app_->clips.At(0).length, 51U);
}

TEST_P(RecoveryTest, AProjectFileThatIsGoneIsRebuiltFromItsRecordings) {
    desk_.Record(*app_, 40);
    desk_.Record(*app_, 60);
    std::filesystem::remove(desk_.files.folder.Native(u"talk.opr"));
    std::filesystem::remove(desk_.files.folder.Native(u"talk01.jvu"));
    const auto app = StartAfterKill();
    EXPECT_EQ(app->clips.Count(), 0);
    EXPECT_THAT(app->project.AdoptRecordings(), SizeIs(2));
    EXPECT_EQ(app->clips.At(0).length, 41U);
    EXPECT_TRUE(app->project.RebuildLevels(after_->Path(Sound(u"talk01"))));
    const auto rebuilt = ReadVuFile(after_->files.services, after_->Path(u"talk01.jvu"));
    ASSERT_TRUE(rebuilt);
    EXPECT_EQ(rebuilt->levels.size(), 61U);
    EXPECT_EQ(app->clips.At(1).name, u"talk01");
}

TEST_P(RecoveryTest, WhatCannotBeMadeWholeKeepsItsJournalUntilItCan) {
    desk_.Begin(*app_, 40);
    ASSERT_TRUE(app_->recorder.MarkWhileRecording());
    ASSERT_EQ(desk_.files.storage.CreateFolder(Path(u"talk00.jvu.tmp")), 0U);
    auto app = StartAfterKill();
    EXPECT_EQ(app->clips.Count(), 1);
    EXPECT_TRUE(LeftBehind(u"talk00.rec"));
    EXPECT_THAT(app->project.LeftAlone(), ElementsAre(u"talk00"));
    app.reset();
    std::filesystem::remove(after_->files.folder.Native(u"talk00.jvu.tmp"));
    app = StartAgain();
    EXPECT_FALSE(LeftBehind(u"talk00.rec"));
    ASSERT_EQ(app->clips.Count(), 1);
    ASSERT_TRUE(app->project.SelectClip(0));
    EXPECT_THAT(app->recording.sheet.marks, ElementsAre(std::min(40U, app->recording.length)));
}

TEST_P(RecoveryTest, ATakeThatCannotBeReadIsNotTakenForAnEmptyOne) {
    desk_.Begin(*app_, 40);
    (void)StartAfterKill();
    const auto native = after_->files.folder.Native();
    std::filesystem::copy_file(desk_.files.folder.Native(u"talk00.rec"), native / "news00.rec");
    // A folder in the take's place opens as little as a broken sector.
    std::filesystem::create_directory(after_->files.folder.Native(Sound(u"news00")));
    const auto app = StartAgain(u"news.opr");
    EXPECT_TRUE(LeftBehind(Sound(u"news00")));
    EXPECT_TRUE(LeftBehind(u"news00.rec"));
}

TEST_P(RecoveryTest, TheTakeOfAProjectWhoseNameEndsInADigitIsNobodyElses) {
    ASSERT_TRUE(OpenOrCreateProject(*app_, Path(u"talk1.opr")));
    desk_.Begin(*app_, 40);
    const auto app = StartAfterKill();  // of "talk", whose take 100 it would be
    EXPECT_EQ(app->clips.Count(), 0);
    EXPECT_THAT(app->project.AdoptRecordings(), IsEmpty());
    EXPECT_TRUE(OpenOrCreateProject(*app, after_->Path(u"talk1.opr")));
    ASSERT_EQ(app->clips.Count(), 1);
    EXPECT_EQ(app->clips.At(0).name, u"talk100");
}

TEST_P(RecoveryTest, AStartWithoutAPathRecoversAFirstTakeToo) {
    desk_.Configure([&](SettingsRecord& record) {
        record.StartMode = 1;
        record.ProjectsFolder = Path(u"");
        record.CurrentProjectName = u"talk";
    });
    desk_.Begin(*app_, 40);
    app_->recorder.SetDrainHold(true);
    app_ = nullptr;  // the drain never came: only the journal's lock is gone
    const auto app = desk_.Start();
    EXPECT_TRUE(OpenProjectAtStart(*app, u""));
    EXPECT_EQ(app->clips.Count(), 1);
}

}  // namespace
}  // namespace orma::test
