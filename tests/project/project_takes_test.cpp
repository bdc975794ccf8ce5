#include <filesystem>

#include <gtest/gtest.h>

#include "audio/files/vu_file.h"
#include "project_rig.h"

namespace orma {
namespace {

using Names = std::vector<Text>;

struct ProjectTakes : testing::Test {
    test::ProjectRig rig;
    Project& project = rig.project;
};

TEST_F(ProjectTakes, AFinishedTakeBecomesTheLastClipAndIsSaved) {
    rig.RecordTake(40);
    rig.RecordTake(60);
    ASSERT_TRUE(project.SelectClip(0));
    rig.recording.sheet.marks = {5};
    rig.recording.selectionEnd = 9;
    rig.RecordTake(80);
    EXPECT_TRUE(rig.recording.sheet.marks.empty());
    EXPECT_EQ(rig.recording.selectionEnd, 0U);
    EXPECT_TRUE(rig.files.boxes.shown.empty());
    EXPECT_EQ(rig.ShownNames(), (Names{u"talk00", u"talk01", u"talk02"}));
    EXPECT_EQ(rig.clips.CurrentIndex(), 2);
    EXPECT_EQ(rig.clips.Current()->end, 0U);
    EXPECT_EQ(rig.clips.Current()->length, 80U);
    EXPECT_EQ(rig.recording.length, 80U);
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk02.wav"));
    EXPECT_EQ(rig.StoredNames(u"talk.opr"), rig.ShownNames());
    const auto sheet = ReadVuFile(rig.files.services, rig.Path(u"talk02.jvu"));
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->rangeStart, 0U);
    EXPECT_EQ(sheet->rangeEnd, 80U);
    EXPECT_EQ(sheet->levels.size(), 80U);
}

TEST_F(ProjectTakes, ATakeWithoutALevelFileIsKeptAllTheSame) {
    ASSERT_EQ(rig.files.storage.CreateFolder(rig.Path(u"talk00.jvu.tmp")), 0U);
    rig.RecordTake(40);
    EXPECT_EQ(rig.files.boxes.shown.size(), 2U) << "tried again as the project was saved";
    EXPECT_EQ(rig.StoredNames(u"talk.opr"), Names{u"talk00"});
    EXPECT_EQ(rig.clips.Current()->length, 40U);
    EXPECT_EQ(rig.recording.sheet.levels.size(), 40U);

    ASSERT_TRUE(std::filesystem::remove(ToUtf8(rig.Path(u"talk00.jvu.tmp"))));
    EXPECT_TRUE(rig.project.SaveProject());
    EXPECT_EQ(ReadVuFile(rig.files.services, rig.Path(u"talk00.jvu")), rig.recording.sheet);
}

TEST_F(ProjectTakes, FilesOfTheTakesNameMoveAside) {
    test::WriteFileBytes(rig.Path(u"talk00 (kept 1).jvu"), AsBytes("older"));
    test::WriteFileBytes(rig.Path(u"talk00.mp2"), AsBytes("other kind"));
    rig.AddLevels(u"talk00", 3);
    rig.RecordTake(40);
    rig.project.NewProject();  // numbering begins again
    rig.RecordTake(60);
    EXPECT_EQ(rig.ShownNames(), Names{u"talk00"});
    EXPECT_EQ(rig.clips.Current()->length, 60U);
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk00 (kept 1).jvu")).size(), 5U);
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk00 (kept 2).mp2")).size(), 10U);
    EXPECT_TRUE(rig.Exists(u"talk00 (kept 2).jvu"));
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk00 (kept 3).wav")).size(),
              44U + 40 * rig.kPeriodBytes);
    EXPECT_TRUE(rig.files.boxes.shown.empty());
}

TEST_F(ProjectTakes, NumbersThatClipsReferToAreSkippedAlsoThoseOfMissingRecordings) {
    rig.AddRecording(u"talk00", 40);
    rig.AddProjectFile(u"talk", {u"talk00", u"talk01"});  // its index says: none recorded yet
    ASSERT_TRUE(project.LoadProject());
    EXPECT_EQ(project.PrepareTake(), u"talk02");
    EXPECT_TRUE(rig.Exists(u"talk00.wav"));
    while (project.RecordingIndex() < 99)
        project.NextRecording();
    rig.AddRecording(u"talk100", 40);  // perhaps the first take of a project "talk1"
    EXPECT_EQ(project.PrepareTake(), u"talk101");
    EXPECT_TRUE(rig.Exists(u"talk100.wav"));
}

/// Storage on which nothing can be renamed away from a recording's name.
class StickyStorage : public PosixStorage {
  public:
    SystemError Rename(const Text& from, const Text& to) override {
        if (to.find(u"(kept") == Text::npos || !to.ends_with(stuck)) {
            return PosixStorage::Rename(from, to);
        }
        return 13;
    }
    Text stuck = u".jvu";
};

TEST_F(ProjectTakes, WhenMovingFailsTheNextFreeNumberIsTakenAndNothingIsTouched) {
    StickyStorage storage;
    Project stuck({{{storage, rig.files.report}, rig.audio, rig.decoder},
                   rig.clock,
                   rig.clips,
                   rig.recording});
    stuck.SetPath(rig.files.folder.Path(), u"talk");
    rig.AddRecording(u"talk00", 40);
    rig.AddRecording(u"talk01", 40);
    EXPECT_EQ(stuck.PrepareTake(), u"talk02");
    EXPECT_EQ(rig.files.boxes.shown.size(), 1U);
    for (const auto* name : {u"talk00.wav", u"talk00.jvu", u"talk01.wav", u"talk01.jvu"})
        EXPECT_TRUE(rig.Exists(name));
    EXPECT_FALSE(rig.Exists(u"talk00 (kept 1).wav"));
}

TEST_F(ProjectTakes, ADiscardedTakeLeavesTheLastOneCurrentAndItsNumberFree) {
    rig.AddWav(project.PrepareTake(), 2);
    project.TakeDiscarded(true);
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_FALSE(rig.Exists(u"talk00.wav"));
    EXPECT_EQ(rig.recording.length, 0U);
    rig.RecordTake(40);
    rig.RecordTake(60);
    ASSERT_TRUE(project.SelectClip(0));
    rig.AddRecording(u"talk02", 9);  // was there before: moves aside
    rig.AddWav(project.PrepareTake(), 2);
    project.TakeDiscarded(true);
    EXPECT_FALSE(rig.Exists(u"talk02.wav"));
    EXPECT_TRUE(rig.Exists(u"talk02 (kept 1).wav"));
    EXPECT_EQ(rig.ShownNames(), (Names{u"talk00", u"talk01"}));
    EXPECT_EQ(rig.clips.CurrentIndex(), 1);
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk01.wav"));
    EXPECT_EQ(rig.recording.length, 60U);
    project.TakeDiscarded(true);  // no take is pending: nothing is deleted
    EXPECT_TRUE(rig.Exists(u"talk01.wav"));
    EXPECT_EQ(project.PrepareTake(), u"talk02");
}

}  // namespace
}  // namespace orma
