#include "project/clip_operations.h"

#include "project/project_menu.h"
#include "project/selection.h"
#include "project_rig.h"

namespace orma::test {
namespace {

struct ClipOperations : ProjectTest {
    ClipOperations() {
        RecordTake(40);
        RecordTake(60);
    }
};

TEST_F(ClipOperations, AddMoveRenameAndRemoveAreStoredAndDoNothingWhilePlaying) {
    AddRecording(u"other", 30);
    EXPECT_FALSE(AddClip(project, Path(u"other.wav"), true));
    EXPECT_FALSE(AddClip(project, Path(u"none.wav"), false));
    EXPECT_FALSE(AddClip(project, Path(u"other.mp2"), false));  // of the other format
    AddFile(u"bad.wav", "RIFF");
    EXPECT_FALSE(AddClip(project, Path(u"bad.wav"), false));
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk01"}));
    EXPECT_EQ(clips.CurrentIndex(), 1);

    EXPECT_TRUE(AddClip(project, Path(u"other.wav"), false));
    EXPECT_EQ(StoredNames(u"talk.opr"), (Names{u"talk00", u"other", u"talk01"}));
    EXPECT_EQ(recording.name, u"other");
    EXPECT_EQ(clips.TotalLength(), 130U);
    EXPECT_TRUE(MoveClipUp(project));
    EXPECT_TRUE(MoveClipUp(project));
    EXPECT_EQ(StoredNames(u"talk.opr"), (Names{u"other", u"talk00", u"talk01"}));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(MoveClipDown(project));
    EXPECT_EQ(StoredNames(u"talk.opr"), (Names{u"talk00", u"talk01", u"other"}));
    EXPECT_FALSE(RenameClip(project, 2, u"Harbour", true));
    EXPECT_FALSE(RenameClip(project, 3, u"Harbour", false));
    EXPECT_TRUE(RenameClip(project, 2, u"Harbour", false));
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk01", u"Harbour"}));

    EXPECT_FALSE(RemoveCurrentClip(project, true));
    EXPECT_TRUE(RemoveCurrentClip(project, false));
    EXPECT_EQ(recording.name, u"talk01");  // the new last one
    EXPECT_TRUE(RemoveCurrentClip(project, false));
    EXPECT_TRUE(RemoveCurrentClip(project, false));
    EXPECT_FALSE(RemoveCurrentClip(project, false));
    EXPECT_EQ(recording.length, 0U);
    EXPECT_FALSE(Exists(u"talk.opr"));
    EXPECT_TRUE(Exists(u"talk00.wav"));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ClipOperations, CopiesOfTheSelectionAreNumberedAndStandBehindTheirSource) {
    ASSERT_TRUE(project.SelectClip(0));
    const auto copy = [&](std::uint32_t begin, std::uint32_t end) {
        recording.selectionStart = begin;
        recording.selectionEnd = end;
        return CopyToClipEditor(project, ProposedClipTitle(project));
    };
    EXPECT_TRUE(copy(5, 10));
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_TRUE(copy(6, 20));
    ASSERT_TRUE(RenameClip(project, 1, u"talk00-7", false));
    EXPECT_EQ(ProposedClipTitle(project), u"talk00-8");
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk00-7", u"talk00-2", u"talk01"}));
    EXPECT_EQ(clips.At(1).length, 5U);
    EXPECT_EQ(clips.At(2).begin, 6U);
    EXPECT_FALSE(copy(7, 7));
    EXPECT_EQ(boxes.Texts(), Names{u"Nothing selected"});

    ASSERT_TRUE(project.OpenRecording(Path(u"talk01.wav")));
    EXPECT_EQ(ProposedClipTitle(project), u"talk01");
    EXPECT_TRUE(copy(0, 0));  // nothing is selected: all of it
    EXPECT_EQ(clips.CurrentIndex(), 4);
    EXPECT_EQ(clips.At(4).length, 60U);
}

TEST_F(ClipOperations, AClipOfAnotherRecordingThanTheOneShownIsNotEdited) {
    clips.At(0).begin = 3;
    clips.At(0).end = 9;
    // As after the removal of a clip whose follower cannot be opened.
    ASSERT_TRUE(clips.SetCurrent(0));
    ASSERT_EQ(recording.name, u"talk01");
    EXPECT_EQ(ProposedClipTitle(project), u"talk01");
    recording.cursor = 20;
    EXPECT_TRUE(CropBegin(project));
    EXPECT_EQ(clips.At(0).begin, 3U);
    EXPECT_EQ(clips.At(0).end, 9U);
    recording.selectionEnd = 50;
    EXPECT_TRUE(CopyToClipEditor(project, u"Harbour"));
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk01", u"Harbour"}));
    EXPECT_EQ(clips.At(2).name, u"talk01");
    EXPECT_EQ(clips.CurrentIndex(), 2);
    EXPECT_EQ(clips.At(2).length, 30U);
}

TEST_F(ClipOperations, TheMenuRefusesWhileBusyAndLeavesProjectsSaved) {
    EXPECT_FALSE(MenuNewProject(project, Path(u"next.opr"), true));
    EXPECT_FALSE(MenuOpen(project, Path(u"next.opr"), true));
    EXPECT_FALSE(MenuOpenClip(project, Path(u"talk00.wav"), true));
    EXPECT_FALSE(MenuDelete(project, Path(u"talk00.wav"), true));
    EXPECT_EQ(boxes.Texts(), (Names{u"MenuNewProject", u"MenuOpen", u"MenuOpen", u"MenuDelete"}));
    EXPECT_EQ(project.Name(), u"talk");

    AddProjectFile(u"next", {u"next00"});
    project.SetProjectText(u"typed since");
    EXPECT_TRUE(MenuNewProject(project, Path(u"next.opr"), false));
    EXPECT_EQ(project.Name(), u"next");
    EXPECT_TRUE(clips.Empty());
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_FALSE(Exists(u"next.opr"));
    EXPECT_TRUE(Exists(u"next.opr.bak"));
    EXPECT_TRUE(MenuOpen(project, Path(u"talk.opr"), false));
    EXPECT_EQ(project.ProjectText(), u"typed since");

    boxes.shown.clear();
    boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kOk};
    EXPECT_FALSE(MenuDelete(project, Path(u"talk00.wav"), false));
    EXPECT_TRUE(Exists(u"talk00.wav"));
    EXPECT_TRUE(MenuDelete(project, Path(u"talk00.wav"), false));
    EXPECT_FALSE(Exists(u"talk00.wav"));
    EXPECT_EQ(boxes.shown[0].text,
              u"Are you shure you want to delete " + Path(u"talk00.wav") + u" ?");
    EXPECT_TRUE(boxes.shown[0].secondIsDefault);
}

}  // namespace
}  // namespace orma::test
