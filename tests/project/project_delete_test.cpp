#include <gmock/gmock.h>

#include "audio/files/take_journal.h"
#include "project_rig.h"

namespace orma::test {
namespace {

struct ProjectDelete : ProjectTest {
    ProjectDelete() {
        RecordTake(40);
        RecordTake(60);
    }

    /// As another run of the program does.
    void StartRecordingTalk01() {
        ASSERT_TRUE(journal.Start(files, Path(u"talk01.wav"), {.blockBytes = 64}, 0));
    }

    TakeJournal journal;
};

TEST_F(ProjectDelete, ARecordingGoesWithItsLevelFileAndItsClips) {
    StartRecordingTalk01();
    EXPECT_FALSE(project.DeletePath(Path(u"talk01.wav")));
    EXPECT_TRUE(Exists(u"talk01.wav"));
    journal.Close();
    EXPECT_TRUE(project.DeletePath(Path(u"talk01.wav")));
    for (const auto* name : {u"talk01.wav", u"talk01.jvu", u"talk01.rec"})
        EXPECT_FALSE(Exists(name));
    EXPECT_EQ(ShownNames(), Names{u"talk00"});
    EXPECT_EQ(clips.CurrentIndex(), -1);
    EXPECT_EQ(recording.length, 0U);
    EXPECT_TRUE(recording.sheet.levels.empty());
    EXPECT_EQ(StoredNames(u"talk.opr"), Names{u"talk00"});
    EXPECT_EQ(StoredNames(u"talk.opr.bak"), (Names{u"talk00", u"talk01"}));
}

TEST_F(ProjectDelete, LeavesTheTakeThatIsBeingRecordedAndClaimsNothing) {
    StartRecordingTalk01();
    EXPECT_FALSE(project.DeletePath(Path(u"talk.opr")));
    EXPECT_EQ(boxes.Texts(), Names{u"The recording is in use: " + Path(u"talk01")});
    EXPECT_FALSE(Exists(u"talk00.wav"));
    EXPECT_TRUE(Exists(u"talk01.wav"));
    EXPECT_TRUE(Exists(u"talk01.rec"));
    EXPECT_EQ(project.PrepareTake(), u"talk00");
    project.TakeDiscarded(false);
    project.NextRecording();
    EXPECT_EQ(project.PrepareTake(), u"talk02") << "nobody else records under its name";
}

TEST_F(ProjectDelete, AFileThatIsNoClipsSoundRemovesNoClip) {
    AddWav(u"loose", 20);
    AddFile(u"talk00.mp2", "x");
    EXPECT_TRUE(project.DeletePath(Path(u"loose.wav")));
    EXPECT_TRUE(project.DeletePath(Path(u"talk00.mp2")));
    EXPECT_FALSE(project.DeletePath(Path(u"none.opr")));
    EXPECT_FALSE(project.DeletePath(Path(u"none.wav")));
    EXPECT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ(clips.Count(), 2);
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_EQ(recording.length, 60U);
}

TEST_F(ProjectDelete, AProjectGoesWithItsNumberedRecordingsAndOnlyThose) {
    const Names others = {u"talk0.wav", u"talk00 (kept 1).wav", u"talk1-00.wav", u"talk100.wav",
                          u"talk98.rec"};
    for (const Text& name : others)
        AddFile(name, "x");
    for (const auto* name : {u"talk99.mp2", u"talk99.jvu"})
        AddFile(name, "x");
    EXPECT_TRUE(project.DeletePath(Path(u"talk.opr")));
    Names left;
    ASSERT_EQ(storage.ListFiles(folder.Path(), left), 0U);
    EXPECT_EQ(left, others);
    EXPECT_TRUE(clips.Empty());
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_EQ(recording.audioPath, Path(u"talk00.wav"));
    EXPECT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"talk.opr"));
}

TEST_F(ProjectDelete, AnotherProjectGoesWithoutTouchingTheCurrentOne) {
    AddProjectFile(u"old", {u"old00"});
    AddRecording(u"old00", 20);
    AddClipOf(u"old00");
    EXPECT_TRUE(project.DeletePath(Path(u"old.opr")));
    EXPECT_FALSE(Exists(u"old00.wav"));
    EXPECT_EQ(StoredNames(u"talk.opr"), (Names{u"talk00", u"talk01"}));
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_EQ(project.RecordingIndex(), 1);
}

}  // namespace
}  // namespace orma::test
