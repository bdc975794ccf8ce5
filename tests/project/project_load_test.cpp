#include <gtest/gtest.h>

#include "project_rig.h"

namespace orma {
namespace {

using test::ProjectRig;
using Names = std::vector<Text>;

struct ProjectLoad : testing::Test {
    ProjectRig rig;
    Project& project = rig.project;

    ProjectRecord record = [] {
        ProjectRecord start;
        start.audioFormatWord = 1;
        start.audioLayout = 2;
        return start;
    }();

    void AddClip(const Text& name, std::uint32_t begin = 0, std::uint32_t end = 0) {
        ClipEntry& clip = record.clips.emplace_back();
        clip.name = name;
        clip.folder = u"D:\\elsewhere\\";
        clip.begin = begin;
        clip.end = end;
    }

    /// Loads "talk.opr" with what `record` holds, as a file of `version`.
    bool Load(std::uint32_t version = 10) {
        Bytes bytes = EncodeProjectFile(record);
        bytes[4] = static_cast<std::uint8_t>(version);
        test::WriteFileBytes(rig.Path(u"talk.opr"), bytes);
        return project.LoadProject();
    }
};

TEST_F(ProjectLoad, NumbersRecordingsWithTwoDigitsAtLeast) {
    EXPECT_EQ(project.AudioFilePath(), rig.Path(u"talk00.wav"));
    project.NextRecording();
    EXPECT_EQ(project.RecordingBaseName(), rig.Path(u"talk00"));
    project.NextRecording();
    rig.audio.mp2 = true;
    EXPECT_EQ(project.AudioFilePath(), rig.Path(u"talk01.mp2"));
    EXPECT_EQ(project.LevelFilePath(), rig.Path(u"talk01.jvu"));
    for (int i = 0; i < 99; ++i)
        project.NextRecording();
    EXPECT_EQ(rig.recording.levelPath, rig.Path(u"talk100.jvu"));
    project.PreviousRecording();
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk99.mp2"));
}

TEST_F(ProjectLoad, AppliesTheParametersOfTheFile) {
    record.audioFormatWord = 0x40000;  // any of bits 16 to 19 is the extra mode; code 0: 48000 Hz
    record.flags = 3;
    record.recordingIndex = 12;
    record.text = u"Notes";
    record.audioLayout = 1;
    project.SetOptions({.liveFtpAllowed = true});
    ASSERT_TRUE(Load());
    EXPECT_TRUE(rig.audio.stereo);
    EXPECT_TRUE(rig.audio.mp2);
    EXPECT_TRUE(project.LiveFtp());
    EXPECT_EQ(rig.audio.sampleRate, 48000U);
    EXPECT_EQ(rig.audio.resolutionShift, 1U);
    EXPECT_EQ(project.ProjectText(), u"Notes");
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk12.mp2"));

    project.SetOptions({.liveFtpAllowed = false});
    record.audioFormatWord = 1;
    record.audioLayout = 7;
    record.recordingIndex = -9;
    ASSERT_TRUE(Load(7));  // leaves stereo as it is
    EXPECT_TRUE(rig.audio.stereo);
    ASSERT_TRUE(Load(8));
    EXPECT_FALSE(rig.audio.stereo);
    EXPECT_FALSE(project.LiveFtp());
    EXPECT_EQ(rig.audio.resolutionShift, 2U);
    EXPECT_EQ(project.RecordingIndex(), -1);
    ASSERT_TRUE(Load(5));
    EXPECT_EQ(rig.audio.resolutionShift, 0U);
}

TEST_F(ProjectLoad, MeasuresClipsNetOfCutsFromTheLevelFileElseFromTheAudio) {
    rig.AddWav(u"talk00", 100);
    rig.AddLevels(u"talk00", 100, {{10, 20, 0}, {90, 95, 7}});
    rig.AddWav(u"talk01", 50);
    test::WriteFileBytes(rig.Path(u"talk01.jvu"), AsBytes("not a level file"));
    AddClip(u"talk00");
    AddClip(u"talk00", 15, 92);
    AddClip(u"talk00", 50, 1000);
    AddClip(u"talk01");
    AddClip(u"..\\talk01", 10, 20);
    const AudioState before = rig.audio;
    ASSERT_TRUE(Load());
    EXPECT_TRUE(rig.files.boxes.shown.empty());
    ASSERT_EQ(rig.clips.Count(), 5);
    EXPECT_EQ(rig.clips.At(0).length, 85U);
    EXPECT_EQ(rig.clips.At(1).length, 70U);  // 20..90
    EXPECT_EQ(rig.clips.At(2).length, 45U);
    EXPECT_EQ(rig.clips.At(3).length, 50U);
    EXPECT_EQ(rig.clips.At(4).length, 10U);
    EXPECT_EQ(rig.clips.At(4).folder, rig.files.folder.Path());  // wherever the file came from
    EXPECT_EQ(rig.clips.At(0).lengthSeconds, 4U);
    EXPECT_EQ(rig.clips.TotalLength(), 260U);
    EXPECT_EQ(rig.audio.sampleRate, before.sampleRate);
}

TEST_F(ProjectLoad, ClampsTheCurrentClip) {
    for (const auto* name : {u"talk00", u"talk01"}) {
        rig.AddRecording(name, 40);
        AddClip(name);
    }
    record.currentClip = 7;
    ASSERT_TRUE(Load());
    EXPECT_EQ(rig.clips.CurrentIndex(), 0);
    record.currentClip = 1;
    ASSERT_TRUE(Load());
    EXPECT_EQ(rig.clips.CurrentIndex(), 1);
    EXPECT_EQ(rig.recording.name, u"talk01");
    EXPECT_EQ(rig.recording.length, 40U);
    record.clips.clear();
    record.recordingIndex = 1;
    ASSERT_TRUE(Load());
    EXPECT_EQ(rig.clips.CurrentIndex(), -1);
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"talk01.wav"));
}

TEST_F(ProjectLoad, SelectsTheRangeOfAClipAndDropsEmptyCuts) {
    rig.AddWav(u"talk00", 100);
    rig.AddLevels(u"talk00", 100, {{10, 10, 1}, {30, 40, 2}});
    AddClip(u"talk00");
    AddClip(u"talk00", 20, 60);
    record.clips[1].title = u"Intro";
    record.currentClip = 1;
    ASSERT_TRUE(Load());
    EXPECT_EQ(rig.recording.title, u"Intro");
    EXPECT_EQ(rig.recording.selectionStart, 20U);
    EXPECT_EQ(rig.recording.selectionEnd, 60U);
    EXPECT_EQ(rig.recording.sheet.cuts, (std::vector<RemovedRange>{{30, 40, 2}}));
    EXPECT_EQ(rig.recording.sheet.levels.size(), 100U);
    ASSERT_TRUE(project.SelectClip(0));
    EXPECT_EQ(rig.recording.selectionEnd, 0U);
    EXPECT_FALSE(project.SelectClip(2));
    rig.AddWav(u"talk00", 0);  // no sound left
    EXPECT_FALSE(project.SelectClip(1));
    EXPECT_EQ(rig.clips.CurrentIndex(), 0);
    EXPECT_EQ(rig.recording.length, 100U);
}

TEST_F(ProjectLoad, OpensARecordingOfAnotherProjectByItself) {
    rig.AddRecording(u"talk00", 40);
    rig.AddWav(u"other.v2", 60);
    AddClip(u"talk00");
    record.currentClip = 0;
    ASSERT_TRUE(Load());
    ASSERT_TRUE(project.OpenRecording(rig.Path(u"other.v2.wav")));
    EXPECT_EQ(rig.clips.CurrentIndex(), -1);
    EXPECT_EQ(rig.recording.name, u"other.v2");
    EXPECT_EQ(rig.recording.levelPath, rig.Path(u"other.v2.jvu"));
    EXPECT_EQ(rig.recording.length, 60U);
    EXPECT_TRUE(rig.recording.sheet.levels.empty());
    EXPECT_FALSE(project.OpenRecording(rig.Path(u"none.wav")));
    EXPECT_FALSE(rig.files.boxes.shown.empty());
    EXPECT_EQ(rig.recording.name, u"other.v2");
}

TEST_F(ProjectLoad, AdoptsTheBitRateOfAnMp2TakeButNotForAMereCheck) {
    // Ten frames of 96 kbit/s mono, 288 bytes each, with the header FF FD 64 C0.
    Bytes frames(2880);
    for (std::size_t at = 0; at < frames.size(); at += 288)
        std::ranges::copy(std::array<std::uint8_t, 4>{0xFF, 0xFD, 0x64, 0xC0},
                          frames.begin() + static_cast<std::ptrdiff_t>(at));
    test::WriteFileBytes(rig.Path(u"talk00.mp2"), frames);
    record.flags = 1;
    AddClip(u"talk00");
    record.currentClip = -1;
    record.recordingIndex = 5;
    ASSERT_TRUE(Load());
    ASSERT_EQ(rig.clips.Count(), 1);
    EXPECT_EQ(rig.clips.At(0).length, 3U);  // 2880 / 600 bytes a period, less one
    EXPECT_EQ(rig.audio.bitrate.Index(), 3U);
    ASSERT_TRUE(project.SelectClip(0));
    EXPECT_EQ(rig.audio.bitrate.Index(), 5U);
}

TEST_F(ProjectLoad, ARefusedFileChangesNothingAndTheOldPathComesBack) {
    rig.AddRecording(u"talk00", 40);
    AddClip(u"talk00");
    ASSERT_TRUE(Load());
    const Bytes foreign = {'R', 'I', 'F', 'F', 1, 2, 3, 4};
    test::WriteFileBytes(rig.Path(u"foreign.opr"), foreign);
    project.SetPath(rig.files.folder.Path(), u"foreign");
    EXPECT_FALSE(project.LoadProject());
    Bytes newer = EncodeProjectFile({});
    newer[4] = 11;
    test::WriteFileBytes(rig.Path(u"newer.opr"), newer);
    project.SetPath(rig.files.folder.Path(), u"newer");
    EXPECT_FALSE(project.LoadProject());
    EXPECT_EQ(rig.files.boxes.Texts(),
              (Names{u"LoadProject Project Id", u"LoadProject Project Version"}));
    EXPECT_EQ(project.Name(), u"talk");
    EXPECT_EQ(rig.ShownNames(), Names{u"talk00"});
    project.Clips().Clear();
    EXPECT_TRUE(project.SaveProject());
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"foreign.opr")), foreign);
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"newer.opr")), newer);
    EXPECT_FALSE(rig.Exists(u"talk.opr"));
}

TEST_F(ProjectLoad, AFileRefusedAtStartUpLeavesAFreeName) {
    test::WriteFileBytes(rig.Path(u"talk.opr"), AsBytes("something else"));
    rig.AddProjectFile(u"talk1-", {});
    EXPECT_FALSE(project.LoadProject());
    EXPECT_EQ(project.Name(), u"talk2-");
    EXPECT_TRUE(project.SaveProject());
    rig.RecordTake(40);
    EXPECT_EQ(rig.StoredNames(u"talk2-.opr"), Names{u"talk2-00"});
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk.opr")).size(), 14U);
}

TEST_F(ProjectLoad, ANewProjectTakesItsFormatAndTextFromTheOptions) {
    rig.AddRecording(u"talk00", 40);
    AddClip(u"talk00");
    record.text = u"old";
    record.publishingValue = 5;
    ASSERT_TRUE(Load());
    test::WriteFileBytes(rig.Path(u"text.txt"), AsBytes("Caf\xE9 \x80"));
    ProjectOptions options{.recordMp2 = true,
                           .stereo = true,
                           .sampleRateCode = 0,
                           .resolutionShift = 9,
                           .bitrateIndex = 7,
                           .useTextFile = true,
                           .textFile = rig.Path(u"text.txt")};
    project.SetOptions(options);
    project.SetPath(rig.files.folder.Path(), u"");
    project.NewProject();
    EXPECT_EQ(project.ProjectFilePath(), rig.Path(u"default.opr"));
    EXPECT_EQ(project.ProjectText(), u"Caf\u00E9 \u20AC");
    EXPECT_EQ(project.Data().publishingValue, 0U);
    EXPECT_EQ(project.RecordingIndex(), -1);
    EXPECT_TRUE(rig.clips.Empty());
    EXPECT_EQ(rig.recording.audioPath, rig.Path(u"default00.mp2"));
    EXPECT_EQ(rig.recording.length, 0U);
    EXPECT_TRUE(rig.audio.stereo);
    EXPECT_EQ(rig.audio.resolutionShift, 2U);
    EXPECT_EQ(rig.audio.bitrate.Index(), 7U);

    test::WriteFileBytes(rig.Path(u"text.txt"), AsBytes("\xEF\xBB\xBF"
                                                        "Caf\xC3\xA9"));
    project.NewProject();
    EXPECT_EQ(project.ProjectText(), u"Caf\u00E9");
    EXPECT_TRUE(rig.files.boxes.shown.empty());
    options.textFile = rig.Path(u"none.txt");
    project.SetOptions(options);
    project.NewProject();
    EXPECT_EQ(rig.files.boxes.shown.size(), 1U);
    EXPECT_EQ(project.ProjectText(), u"");
}

}  // namespace
}  // namespace orma
