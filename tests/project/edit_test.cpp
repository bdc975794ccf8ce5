#include "audio/files/level_tables.h"
#include "audio/files/vu_file.h"
#include "project/cuts.h"
#include "project/edge_nudge.h"
#include "project/marks.h"
#include "project/selection.h"
#include "project/undo.h"
#include "project_rig.h"

namespace orma::test {
namespace {

using Marks = std::vector<std::uint32_t>;
using Cuts = std::vector<RemovedRange>;

/// A take of 100 periods, 20 a second, with a clip.
struct EditTest : ProjectTest {
    EditTest() { RecordTake(100); }

    [[nodiscard]] Marks StoredMarks() { return GetVuMarks(files, recording.levelPath); }
    [[nodiscard]] Cuts StoredCuts() { return GetVuRemovedRanges(files, recording.levelPath); }
    [[nodiscard]] std::uint32_t ClipLength() { return clips.At(0).length; }
    [[nodiscard]] ClipEntry StoredClip() {
        ProjectRecord stored;
        EXPECT_EQ(ReadProjectFile(files, project.ProjectFilePath(), stored),
                  ProjectReadResult::kOk);
        return stored.clips.at(0);
    }

    /// Cuts with the edges of the present cut.
    bool CutBeginAt(std::uint32_t cursor, bool second) {
        recording.cursor = cursor;
        return CutBegin(project, second);
    }
    bool CutEndAt(std::uint32_t cursor, bool second) {
        recording.cursor = cursor;
        return CutEnd(project, second);
    }

    /// The last change of the cuts to `now` can be taken back and done again.
    void ExpectUndone(const Cuts& now, const Cuts& before, std::uint32_t lengthBefore) {
        const std::uint32_t length = ClipLength();
        EXPECT_EQ(StoredCuts(), now);
        EXPECT_TRUE(UndoEdit(project));
        EXPECT_EQ(StoredCuts(), before);
        EXPECT_EQ(ClipLength(), lengthBefore);
        EXPECT_TRUE(RedoEdit(project));
        EXPECT_EQ(StoredCuts(), now);
        EXPECT_EQ(ClipLength(), length);
    }
};

TEST_F(EditTest, MarksAreKeptInOrderAndInTheLevelFile) {
    for (const std::uint32_t position : {9U, 2U, 5U, 5U})
        EXPECT_TRUE(InsertMark(files, recording, position));
    EXPECT_EQ(StoredMarks(), (Marks{2, 5, 5, 9}));
    EXPECT_EQ(FindMark(recording.sheet, 9), 3U);
    EXPECT_EQ(FindMark(recording.sheet, 4), 4U);
    EXPECT_TRUE(DeleteMark(files, recording, 4));
    EXPECT_FALSE(CanUndo(project));
    recording.cursor = 9;
    EXPECT_TRUE(ToggleMark(files, recording));
    EXPECT_EQ(StoredMarks(), (Marks{2, 5, 5}));
    EXPECT_TRUE(UndoEdit(project));
    EXPECT_EQ(StoredMarks(), (Marks{2, 5, 5, 9}));
    EXPECT_FALSE(UndoEdit(project));
    EXPECT_TRUE(RedoEdit(project));
    EXPECT_EQ(StoredMarks(), (Marks{2, 5, 5}));
    EXPECT_TRUE(ToggleMark(files, recording));
    EXPECT_EQ(StoredMarks(), (Marks{2, 5, 5, 9}));
}

TEST_F(EditTest, WhatCannotBeKeptIsRefusedWithAReason) {
    Marks& marks = recording.sheet.marks;
    marks.assign(LevelSheet::kMaxMarks, 3);
    EXPECT_FALSE(InsertMark(files, recording, 4));
    EXPECT_EQ(marks.size(), 1003U);
    EXPECT_TRUE(DeleteMark(files, recording, 3));
    EXPECT_TRUE(InsertMark(files, recording, 4));
    EXPECT_FALSE(UndoEdit(project));  // no room for the deleted one
    for (std::uint32_t i = 0; i < 100; ++i)
        ASSERT_TRUE(AddCut(project, i, i));
    EXPECT_FALSE(AddCut(project, 1, 2));
    EXPECT_EQ(recording.sheet.cuts.size(), 100U);
    EXPECT_EQ(boxes.Texts(),
              (Names{u"There is no room for more marks.", u"There is no room for more marks.",
                     u"There is no room for more cuts."}));
    marks = {3};
    recording.sheet.cuts = {{1, 2, 0}};
    ASSERT_EQ(storage.CreateFolder(recording.levelPath + u".tmp"), 0U);
    EXPECT_FALSE(InsertMark(files, recording, 4));
    EXPECT_FALSE(DeleteMark(files, recording, 3));
    EXPECT_FALSE(DeleteCut(project, 0));
    EXPECT_EQ(marks, Marks{3});
    EXPECT_EQ(recording.sheet.cuts, (Cuts{{1, 2, 0}}));
    EXPECT_EQ(boxes.shown.size(), 6U);
}

TEST_F(EditTest, ANewCutIsASecondLongOrEmptyAndStaysInTheRecording) {
    EXPECT_TRUE(CutBeginAt(90, true));
    EXPECT_EQ(recording.cursor, 100U);
    EXPECT_EQ(recording.currentCut, -1);
    EXPECT_EQ(ClipLength(), 90U);
    EXPECT_TRUE(CutEndAt(2, true));
    EXPECT_EQ(recording.cursor, 0U);
    EXPECT_TRUE(CutEndAt(50, false));
    EXPECT_EQ(StoredCuts(), (Cuts{{0, 2, 0}, {50, 50, 0}, {90, 100, 0}}));
    EXPECT_EQ(ClipLength(), 88U);
}

TEST_F(EditTest, ANewCutIsTakenBackWithTheLengthItWasGiven) {
    ASSERT_TRUE(AddCut(project, 1, 2));
    EXPECT_TRUE(CutBeginAt(50, false));
    recording.currentCut = 1;
    EXPECT_TRUE(CutEndAt(60, false));
    EXPECT_TRUE(UndoEdit(project));
    EXPECT_EQ(StoredCuts(), (Cuts{{1, 2, 0}}));
    EXPECT_EQ(ClipLength(), 99U);
    EXPECT_TRUE(UndoEdit(project));  // once more: cut again
    EXPECT_EQ(StoredCuts(), (Cuts{{1, 2, 0}, {50, 60, 0}}));
    EXPECT_TRUE(RedoEdit(project));
    EXPECT_EQ(StoredCuts(), (Cuts{{1, 2, 0}}));
}

TEST_F(EditTest, AnEdgeMovesToTheCursorAndBack) {
    ASSERT_TRUE(AddCut(project, 20, 60));
    recording.currentCut = 0;
    EXPECT_TRUE(CutBeginAt(60, true));  // not in front of the end
    EXPECT_EQ(StoredCuts(), (Cuts{{20, 60, 0}}));
    ASSERT_TRUE(AddCut(project, 1, 2));  // the current cut is the second one now
    EXPECT_TRUE(CutBeginAt(30, true));
    ExpectUndone({{1, 2, 0}, {30, 60, 0}}, {{1, 2, 0}, {20, 60, 0}}, 59);
    EXPECT_TRUE(CutEndAt(40, true));
    ExpectUndone({{1, 2, 0}, {30, 40, 0}}, {{1, 2, 0}, {30, 60, 0}}, 69);
}

TEST_F(EditTest, ADeletedCutComesBackWhole) {
    recording.sheet.cuts = {{1, 2, 7}, {10, 30, 8}, {50, 60, 9}};
    EXPECT_TRUE(DeleteCut(project, 1));
    ExpectUndone({{1, 2, 7}, {50, 60, 9}}, {{1, 2, 7}, {10, 30, 8}, {50, 60, 9}}, 69);
    EXPECT_EQ(ClipLength(), 89U);
    EXPECT_FALSE(DeleteCut(project, 2));
    ASSERT_TRUE(project.SelectClip(0));  // another selection has nothing to undo
    EXPECT_FALSE(CanUndo(project));
}

TEST_F(EditTest, CropMovesTheSelectionAndTheClipsBoundsButNoSound) {
    recording.sheet.cuts = {{30, 40, 0}};
    ASSERT_TRUE(WriteVuFile(files, recording.levelPath, recording.sheet));
    const Bytes sound = ReadFileBytes(recording.audioPath);
    recording.cursor = 20;
    EXPECT_TRUE(CropBegin(project));  // there was no selection: up to the end
    EXPECT_EQ(clips.At(0).end, 100U);
    recording.cursor = 50;
    EXPECT_TRUE(CropEnd(project));
    EXPECT_EQ(ClipLength(), 20U);
    recording.cursor = 10;
    EXPECT_TRUE(CropEnd(project));  // before the begin
    EXPECT_EQ(recording.selectionStart, 0U);
    EXPECT_EQ(StoredClip().begin, 0U);
    EXPECT_EQ(StoredClip().end, 10U);
    EXPECT_EQ(ReadFileBytes(recording.audioPath), sound);
    clips.ClearCurrent();
    recording.cursor = 90;
    EXPECT_TRUE(CropEnd(project));
    EXPECT_EQ(PlayingLength(recording), 80U);
    EXPECT_EQ(clips.At(0).end, 10U);
}

TEST_F(EditTest, ANudgedSelectionIsTheSameInMemoryAndInTheFileWhateverFails) {
    ASSERT_TRUE(project.SelectClip(0));
    recording.cursor = 50;
    ASSERT_TRUE(CropEnd(project));
    const auto nudge = [&] {
        const auto move = NudgeAtCursor(recording, true);
        return move && MoveEdge(project, *move);
    };
    // A level file that is still to be written does not belong to the step.
    ASSERT_EQ(storage.Delete(recording.levelPath), 0U);
    ASSERT_EQ(storage.CreateFolder(recording.levelPath + u".tmp"), 0U);
    EXPECT_TRUE(nudge());
    ASSERT_EQ(storage.CreateFolder(project.ProjectFilePath() + u".tmp"), 0U);
    EXPECT_FALSE(nudge());
    for (const std::uint32_t end :
         {StoredClip().end, clips.At(0).end, recording.selectionEnd, recording.cursor})
        EXPECT_EQ(end, 51U);
}

TEST_F(EditTest, ARecordingWithoutLevelsGetsThoseThatTheRecorderReckonsBeforeItIsMarked) {
    Bytes sound(3 * 2205 * 2);
    for (std::size_t at = 0; at < sound.size(); at += 3)
        sound[at + 2] = at % 2 == 0 ? 0x90 : 0x10;  // upper halves -28672 and 4096
    std::fill_n(sound.begin(), 3 * 2205, std::uint8_t{0x90});
    WriteFileBytes(Path(u"digital.wav"), TakeFile({.bits = 24}, sound));
    ASSERT_TRUE(project.OpenRecording(Path(u"digital.wav")));
    EXPECT_FALSE(InsertMark(files, recording, 1));
    EXPECT_EQ(boxes.shown.size(), 1U);
    ASSERT_TRUE(EnsureLevels(project));
    EXPECT_EQ(recording.sheet.levels, (std::vector{LevelOfPeak(0), LevelOfPeak(4096)}));
    EXPECT_TRUE(InsertMark(files, recording, 1));
    EXPECT_EQ(StoredMarks(), Marks{1});
}

}  // namespace
}  // namespace orma::test
