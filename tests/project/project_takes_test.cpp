#include <gmock/gmock.h>

#include "audio/files/take_journal.h"
#include "audio/files/vu_file.h"
#include "audio/files/wav_header.h"
#include "project_rig.h"

namespace orma::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

using ProjectTakes = ProjectTest;

TEST_F(ProjectTakes, AFinishedTakeBecomesTheLastClipAndIsSaved) {
    RecordTake(40);
    RecordTake(60);
    ASSERT_TRUE(project.SelectClip(0));
    recording.sheet.marks = {5};
    recording.selectionEnd = 9;
    RecordTake(80);
    EXPECT_TRUE(recording.sheet.marks.empty());
    EXPECT_EQ(recording.selectionEnd, 0U);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk01", u"talk02"}));
    EXPECT_EQ(clips.CurrentIndex(), 2);
    EXPECT_EQ(clips.Current()->length, 80U);
    EXPECT_EQ(recording.length, 80U);
    EXPECT_EQ(recording.audioPath, Path(u"talk02.wav"));
    EXPECT_EQ(StoredNames(u"talk.opr"), ShownNames());
    const auto sheet = ReadVuFile(files, Path(u"talk02.jvu"));
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->rangeEnd, 80U);
    EXPECT_EQ(sheet->levels.size(), 80U);
}

TEST_F(ProjectTakes, AFileThatAnotherProgramTookAwayIsToldAtTheEndOfItsTake) {
    (void)project.PrepareTake();
    recording.sheet.levels.assign(60, 10);
    project.TakeFinished();
    EXPECT_THAT(boxes.Texts(), Contains(u"The recording is gone:\n" + Path(u"talk00.wav")));
}

TEST_F(ProjectTakes, FilesOfTheTakesNameMoveAside) {
    AddFile(u"talk00 (kept 1).jvu", "older");
    AddFile(u"talk00.mp2", "other kind");
    AddLevels(u"talk00", 3);
    RecordTake(40);
    project.NewProject();  // numbering begins again
    RecordTake(60);
    EXPECT_EQ(ShownNames(), Names{u"talk00"});
    EXPECT_EQ(clips.Current()->length, 60U);
    EXPECT_EQ(File(u"talk00 (kept 1).jvu").size(), 5U);
    EXPECT_EQ(File(u"talk00 (kept 2).mp2").size(), 10U);
    EXPECT_TRUE(Exists(u"talk00 (kept 2).jvu"));
    EXPECT_EQ(File(u"talk00 (kept 3).wav").size(), 44U + 40 * kPeriodBytes);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ProjectTakes, NumbersThatClipsReferToAreSkippedAlsoThoseOfMissingRecordings) {
    AddRecording(u"talk00", 40);
    AddProjectFile(u"talk", {u"talk00", u"talk01"});  // its index says: none recorded yet
    ASSERT_TRUE(project.LoadProject());
    EXPECT_EQ(project.PrepareTake(), u"talk02");
    EXPECT_TRUE(Exists(u"talk00.wav"));
    while (project.RecordingIndex() < 99)
        project.NextRecording();
    AddRecording(u"talk100", 40);  // perhaps the first take of a project "talk1"
    EXPECT_EQ(project.PrepareTake(), u"talk101");
    EXPECT_TRUE(Exists(u"talk100.wav"));
}

TEST_F(ProjectTakes, WhenMovingFailsTheNextFreeNumberIsTakenAndNothingIsTouched) {
    AddRecording(u"talk00", 40);
    AddRecording(u"talk01", 40);
    storage.FailAt(FaultyStorage::kRename, 2);  // the first file of talk00 has moved
    EXPECT_EQ(project.PrepareTake(), u"talk02");
    EXPECT_EQ(boxes.shown.size(), 1U);
    for (const auto* name : {u"talk00.wav", u"talk00.jvu", u"talk01.wav", u"talk01.jvu"})
        EXPECT_TRUE(Exists(name));
    EXPECT_FALSE(Exists(u"talk00 (kept 1).wav"));
}

TEST_F(ProjectTakes, ADiscardedTakeLeavesTheLastOneCurrentAndItsNumberFree) {
    AddWav(project.PrepareTake(), 2);
    project.TakeDiscarded(true);
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_FALSE(Exists(u"talk00.wav"));
    EXPECT_EQ(recording.length, 0U);
    RecordTake(40);
    RecordTake(60);
    ASSERT_TRUE(project.SelectClip(0));
    AddRecording(u"talk02", 9);  // was there before: moves aside
    AddWav(project.PrepareTake(), 2);
    project.TakeDiscarded(true);
    EXPECT_FALSE(Exists(u"talk02.wav"));
    EXPECT_TRUE(Exists(u"talk02 (kept 1).wav"));
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_EQ(recording.audioPath, Path(u"talk01.wav"));
    project.TakeDiscarded(true);  // no take is pending: nothing is deleted
    EXPECT_TRUE(Exists(u"talk01.wav"));
    EXPECT_EQ(project.PrepareTake(), u"talk02");
}

TEST_F(ProjectTakes, RecoveredSoundThatFitsNowhereIsKeptBesideTheTake) {
    AddRecording(u"talk00", 40);
    AddProjectFile(u"talk", {u"talk00"});
    const Bytes take = File(u"talk00.wav");
    LeaveJournal(u"talk00", Bytes(600, 0x5A));  // of another recording
    const Bytes journal = File(u"talk00.rec");
    ASSERT_TRUE(project.LoadProject());
    project.RecoverTakes();
    EXPECT_EQ(File(u"talk00.wav"), take);
    EXPECT_FALSE(Exists(u"talk00.rec"));
    EXPECT_EQ(File(u"talk00 (kept 1).rec"), journal);
    EXPECT_EQ(ShownNames(), Names{u"talk00"});
}

TEST_F(ProjectTakes, RecoveredSoundOfLessThanAPeriodIsNoClipButStays) {
    const auto head = WavHeader().Encode();
    Bytes sound(head.begin(), head.end());
    sound.resize(sound.size() + kPeriodBytes / 2, 0x11);
    LeaveJournal(u"talk00", sound);
    project.RecoverTakes();
    EXPECT_TRUE(clips.Empty());
    EXPECT_THAT(project.LeftAlone(), ElementsAre(u"talk00"));
    EXPECT_FALSE(Exists(u"talk00.rec")) << "it is looked at once";
    const Bytes take = File(u"talk00.wav");
    ASSERT_EQ(take.size(), sound.size());
    EXPECT_TRUE(std::equal(take.begin() + 44, take.end(), sound.begin() + 44));
    EXPECT_EQ(project.PrepareTake(), u"talk01");
}

}  // namespace
}  // namespace orma::test
