#include "project_rig.h"

namespace orma::test {
namespace {

struct ProjectSave : ProjectTest {
    ProjectSave() {
        for (const auto* name : {u"talk00", u"talk01", u"talk02"})
            AddRecording(name, 40);
    }

    void LoadWith(const Names& names) {
        AddProjectFile(u"talk", names);
        ASSERT_TRUE(project.LoadProject());
    }

    void RemoveClip(std::int32_t index) {
        ASSERT_TRUE(clips.SetCurrent(index));
        clips.RemoveCurrent();
    }
};

TEST_F(ProjectSave, CarriesEverythingThroughLoadAndSave) {
    ProjectRecord record;
    record.audioFormatWord = 0x10000;
    record.flags = 2;
    record.recordingIndex = 2;
    record.text = u"Notes";
    record.publishingValue = 4;
    record.metadata1 = u"one";
    record.metadata2 = u"two";
    record.audioLayout = 1;
    record.stream1 = 5;
    record.stream2to4 = {0.1, 0.2, 0.3};
    record.stream5 = 6;
    record.currentClip = 2;  // as the file counts, which knows of the missing one
    for (const auto* name : {u"talk00", u"gone", u"talk01"}) {
        ClipEntry& clip = record.clips.emplace_back();
        clip.name = name;
        clip.folder = folder.Path();
        clip.begin = 3;
        clip.end = 30;
        clip.reserved = 9;
        clip.title = u"T";
    }
    const Bytes file = EncodeProjectFile(record);
    WriteFileBytes(Path(u"talk.opr"), file);
    audio.sampleRate = 96000;
    project.SetOptions({.liveFtpAllowed = true});
    audio.resolutionShift = 0;
    ASSERT_TRUE(project.LoadProject());
    ASSERT_TRUE(project.SaveProject());
    // The WAV files are mono; loading them must not touch the project's own parameters.
    EXPECT_EQ(File(u"talk.opr"), file);
    EXPECT_FALSE(Exists(u"talk.opr.bak"));
    EXPECT_EQ(clips.CurrentIndex(), 1);
    EXPECT_EQ(recording.name, u"talk01");
    // The whole card is away for a day.
    for (const auto* name : {u"talk00.wav", u"talk01.wav"})
        ASSERT_EQ(storage.Rename(Path(name), Path(Text(u"away") + name)), 0U);
    ASSERT_TRUE(project.LoadProject());
    EXPECT_EQ(clips.CurrentIndex(), -1);
    ASSERT_TRUE(project.SaveProject());
    EXPECT_EQ(File(u"talk.opr"), file);
}

TEST_F(ProjectSave, RemembersClipsOfMissingRecordingsUntilTheyAreBack) {
    LoadWith({u"card0", u"talk00", u"card1", u"talk01", u"card2"});
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"talk01"}));
    ASSERT_TRUE(clips.SetCurrent(0));
    clips.MoveCurrentDown();
    ASSERT_TRUE(project.SaveProject());
    EXPECT_EQ(StoredNames(u"talk.opr"),
              (Names{u"card0", u"talk01", u"card2", u"talk00", u"card1"}));
    AddClipOf(u"talk02");
    RemoveClip(0);  // those behind it now follow the next one, in the order of the file
    ASSERT_TRUE(project.SaveProject());
    EXPECT_EQ(StoredNames(u"talk.opr"),
              (Names{u"card0", u"talk00", u"card1", u"card2", u"talk02"}));
    AddRecording(u"card1", 40);
    ASSERT_TRUE(project.LoadProject());
    EXPECT_EQ(ShownNames(), (Names{u"talk00", u"card1", u"talk02"}));
}

TEST_F(ProjectSave, OnlyAnEmptyProjectWithoutRememberedClipsLosesItsFile) {
    LoadWith({u"talk00", u"card0"});
    RemoveClip(0);
    ASSERT_TRUE(project.SaveProject());
    EXPECT_EQ(StoredNames(u"talk.opr"), Names{u"card0"});
    AddRecording(u"card0", 40);
    LoadWith({u"card0"});
    RemoveClip(0);
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"talk.opr"));
    EXPECT_EQ(StoredNames(u"talk.opr.bak"), Names{u"card0"});
    EXPECT_TRUE(project.SaveProject());  // nothing left to remove
}

TEST_F(ProjectSave, KeepsTheOldFileExactlyWhenAClipIsDropped) {
    LoadWith({u"talk00", u"talk00", u"talk01"});
    const Bytes before = File(u"talk.opr");
    clips.At(0).title = u"edited";
    clips.At(1).end = 20;
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"talk.opr.bak"));
    WriteFileBytes(Path(u"talk.opr"), before);
    RemoveClip(1);                             // one of two clips of the same recording
    for (const std::size_t step : {1U, 2U}) {  // the backup and the file itself
        storage.FailAt(FaultyStorage::kRename, step);
        EXPECT_FALSE(project.SaveProject());
        EXPECT_EQ(File(u"talk.opr"), before);
    }
    ASSERT_TRUE(project.SaveProject());
    EXPECT_EQ(File(u"talk.opr.bak"), before);
    EXPECT_EQ(StoredNames(u"talk.opr"), (Names{u"talk00", u"talk01"}));
}

TEST_F(ProjectSave, AnEmptyProjectLeavesAFileAloneThatItNeverRead) {
    AddProjectFile(u"talk", {u"talk00"});
    EXPECT_TRUE(project.SaveProject());
    EXPECT_TRUE(Exists(u"talk.opr"));
    EXPECT_EQ(project.PrepareTake(), u"talk03");  // the recordings are that file's
    project.TakeDiscarded(true);
    project.NewProject();  // the user's choice of that name
    EXPECT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"talk.opr"));
    EXPECT_EQ(StoredNames(u"talk.opr.bak"), Names{u"talk00"});

    AddFile(u"talk.opr", "not ours");
    const Bytes foreign = File(u"talk.opr");
    EXPECT_TRUE(project.SaveProject());
    EXPECT_EQ(File(u"talk.opr"), foreign);
    EXPECT_FALSE(project.LoadProject());
    EXPECT_EQ(project.Name(), u"talk");  // what is in memory belongs there
    RecordTake(40);
    EXPECT_EQ(File(u"talk (kept 1).opr"), foreign);
    EXPECT_EQ(StoredNames(u"talk.opr"), Names{u"talk00"});
}

TEST_F(ProjectSave, KeepsTheTextOfAProjectThatHasNoFileYet) {
    const auto startAgain = [&] {
        project.SetPath(folder.Path(), u"fresh");
        project.NewProject();
    };
    startAgain();
    project.SetProjectText(u"Pilot: Mme Ren\u00E9 \u2013 10:30");
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"fresh.opr"));
    startAgain();
    EXPECT_EQ(project.ProjectText(), u"Pilot: Mme Ren\u00E9 \u2013 10:30");

    RecordTake(40);
    ASSERT_TRUE(project.SaveProject());
    EXPECT_TRUE(Exists(u"fresh.opr"));
    EXPECT_FALSE(Exists(u"fresh.opr.text"));
    // Removed with the last clip, the file no longer holds it either.
    clips.Clear();
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"fresh.opr"));
    EXPECT_TRUE(Exists(u"fresh.opr.text"));
    project.SetProjectText(u"");
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"fresh.opr.text"));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(ProjectSave, KeepsNoTextThatTheUserDidNotWriteHereOrDeleted) {
    AddFile(u"sheet.txt", "Fill in");
    project.SetOptions({.useTextFile = true, .textFile = Path(u"sheet.txt")});
    project.SetPath(folder.Path(), u"fresh");
    project.NewProject();
    ASSERT_EQ(project.ProjectText(), u"Fill in");
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"fresh.opr.text"));

    project.SetPath(folder.Path(), u"talk");
    LoadWith({u"talk00"});
    project.SetProjectText(u"Given up");
    ASSERT_TRUE(project.SaveProject());
    ASSERT_TRUE(project.DeletePath(Path(u"talk.opr")));
    ASSERT_TRUE(project.SaveProject());
    EXPECT_FALSE(Exists(u"talk.opr.text"));
}

TEST_F(ProjectSave, AProjectsOwnTextAndADraftBesideItAreBothKept) {
    LoadWith({u"talk00"});
    project.SetProjectText(u"Own");
    ASSERT_TRUE(project.SaveProject());
    AddFile(u"talk.opr.text", "Draft");
    for (int start = 0; start < 2; ++start) {
        project.SetPath(folder.Path(), u"talk");
        ASSERT_TRUE(project.LoadProject());
        EXPECT_EQ(project.ProjectText(), u"Own\r\n\r\nDraft");
        ASSERT_TRUE(project.SaveProject());
        EXPECT_FALSE(Exists(u"talk.opr.text"));
    }
}

}  // namespace
}  // namespace orma::test
