#include <gtest/gtest.h>

#include "project_rig.h"

namespace orma {
namespace {

using Names = std::vector<Text>;

struct ProjectDelete : testing::Test {
    ProjectDelete() {
        rig.RecordTake(40);
        rig.RecordTake(60);
    }
    test::ProjectRig rig;
    Project& project = rig.project;
};

TEST_F(ProjectDelete, ARecordingGoesWithItsLevelFileAndItsClips) {
    TakeJournal journal;
    ASSERT_TRUE(journal.Start(rig.files.services, rig.Path(u"talk01.wav"), {.blockBytes = 64}, 0));
    EXPECT_FALSE(project.DeletePath(rig.Path(u"talk01.wav")));  // it is being recorded
    EXPECT_TRUE(rig.Exists(u"talk01.wav"));
    journal.Close();
    EXPECT_TRUE(project.DeletePath(rig.Path(u"talk01.wav")));
    EXPECT_FALSE(rig.Exists(u"talk01.wav"));
    EXPECT_FALSE(rig.Exists(u"talk01.jvu"));
    EXPECT_FALSE(rig.Exists(u"talk01.rec"));
    EXPECT_EQ(rig.ShownNames(), Names{u"talk00"});
    EXPECT_EQ(rig.clips.CurrentIndex(), -1);
    EXPECT_EQ(rig.recording.length, 0U);
    EXPECT_TRUE(rig.recording.sheet.levels.empty());
    EXPECT_EQ(rig.StoredNames(u"talk.opr"), Names{u"talk00"});
    EXPECT_EQ(rig.StoredNames(u"talk.opr.bak"), (Names{u"talk00", u"talk01"}));
}

TEST_F(ProjectDelete, AFileThatIsNoClipsSoundRemovesNoClip) {
    rig.AddWav(u"loose", 20);
    test::WriteFileBytes(rig.Path(u"talk00.mp2"), AsBytes("x"));
    EXPECT_TRUE(project.DeletePath(rig.Path(u"loose.wav")));
    EXPECT_TRUE(project.DeletePath(rig.Path(u"talk00.mp2")));
    EXPECT_FALSE(project.DeletePath(rig.Path(u"none.opr")));
    EXPECT_FALSE(project.DeletePath(rig.Path(u"none.wav")));
    EXPECT_EQ(rig.files.boxes.shown.size(), 2U);
    EXPECT_EQ(rig.clips.Count(), 2);
    EXPECT_EQ(rig.clips.CurrentIndex(), 1);
    EXPECT_EQ(rig.recording.length, 60U);
}

TEST_F(ProjectDelete, AProjectGoesWithItsNumberedRecordingsAndOnlyThose) {
    for (const auto* name : {u"talk99.mp2", u"talk99.jvu", u"talk98.rec", u"talk100.wav",
                             u"talk0.wav", u"talk00 (kept 1).wav", u"talk1-00.wav"})
        test::WriteFileBytes(rig.Path(name), AsBytes("x"));
    EXPECT_TRUE(project.DeletePath(rig.Path(u"talk.opr")));
    std::vector<Text> left;
    ASSERT_EQ(rig.files.storage.ListFiles(rig.files.folder.Path(), left), 0U);
    EXPECT_EQ(left, (Names{u"talk0.wav", u"talk00 (kept 1).wav", u"talk1-00.wav", u"talk100.wav",
                           u"talk98.rec"}));
    EXPECT_TRUE(rig.clips.Empty());
    EXPECT_EQ(rig.clips.CurrentIndex(), -1);
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk00.wav"));
    EXPECT_TRUE(project.SaveProject());
    EXPECT_FALSE(rig.Exists(u"talk.opr"));
}

TEST_F(ProjectDelete, AnotherProjectGoesWithoutTouchingTheCurrentOne) {
    rig.AddProjectFile(u"old", {u"old00"});
    rig.AddRecording(u"old00", 20);
    ClipEntry borrowed;
    borrowed.folder = project.Folder();
    borrowed.name = u"old00";
    rig.clips.Append(borrowed);
    EXPECT_TRUE(project.DeletePath(rig.Path(u"old.opr")));
    EXPECT_FALSE(rig.Exists(u"old00.wav"));
    EXPECT_EQ(rig.StoredNames(u"talk.opr"), (Names{u"talk00", u"talk01"}));
    EXPECT_EQ(rig.clips.CurrentIndex(), 1);
    EXPECT_EQ(project.RecordingIndex(), 1);
}

}  // namespace
}  // namespace orma
