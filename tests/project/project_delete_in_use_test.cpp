#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/take_journal.h"
#include "project_rig.h"

namespace orma {
namespace {

TEST(ProjectDeleteInUse, LeavesTheTakeThatIsBeingRecordedAndClaimsNothing) {
    test::ProjectRig rig;
    rig.RecordTake(40);
    rig.RecordTake(60);
    TakeJournal journal;
    ASSERT_TRUE(journal.Start(rig.files.services, rig.Path(u"talk01.wav"), {.blockBytes = 64}, 0));
    EXPECT_FALSE(rig.project.DeletePath(rig.Path(u"talk.opr")));
    EXPECT_THAT(rig.files.boxes.Texts(),
                testing::ElementsAre(u"The recording is in use: " + rig.Path(u"talk01")));
    EXPECT_FALSE(rig.Exists(u"talk00.wav"));
    EXPECT_TRUE(rig.Exists(u"talk01.wav"));
    EXPECT_TRUE(rig.Exists(u"talk01.rec"));
    EXPECT_EQ(rig.project.PrepareTake(), u"talk00");
    rig.project.TakeDiscarded(false);
    rig.project.NextRecording();
    EXPECT_EQ(rig.project.PrepareTake(), u"talk02") << "nobody else records under its name";
}

TEST(ProjectDeleteInUse, AFileThatAnotherProgramTookAwayIsToldAtTheEndOfItsTake) {
    test::ProjectRig rig;
    rig.RecordTake(40);
    EXPECT_EQ(rig.project.PrepareTake(), u"talk01");
    rig.recording.sheet.levels.assign(60, 10);
    rig.project.TakeFinished();
    EXPECT_THAT(rig.files.boxes.Texts(),
                testing::Contains(u"The recording is gone:\n" + rig.Path(u"talk01.wav")));
    EXPECT_EQ(rig.ShownNames().front(), u"talk00");
}

}  // namespace
}  // namespace orma
