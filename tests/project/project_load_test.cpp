#include "project_rig.h"

namespace orma::test {
namespace {

struct ProjectLoad : ProjectTest {
    ProjectLoad() {
        record.audioFormatWord = 1;
        record.audioLayout = 2;
    }

    void AddClip(const Text& name, std::uint32_t begin = 0, std::uint32_t end = 0) {
        ClipEntry& clip = record.clips.emplace_back();
        clip.name = name;
        clip.folder = u"D:\\elsewhere\\";
        clip.begin = begin;
        clip.end = end;
    }

    /// Writes a project file with what `record` holds, as one of `version`.
    void AddFileOfVersion(const Text& name, std::uint8_t version) {
        Bytes bytes = EncodeProjectFile(record);
        bytes[4] = version;
        WriteFileBytes(Path(name), bytes);
    }
    bool Load(std::uint8_t version = 10) {
        AddFileOfVersion(u"talk.opr", version);
        return project.LoadProject();
    }

    ProjectRecord record;
};

TEST_F(ProjectLoad, AppliesTheParametersOfTheFile) {
    record.audioFormatWord = 0x40000;  // any of bits 16 to 19 is the extra mode; code 0: 48000 Hz
    record.flags = 3;
    record.recordingIndex = 7;
    record.text = u"Notes";
    record.audioLayout = 1;
    project.SetOptions({.liveFtpAllowed = true});
    ASSERT_TRUE(Load());
    EXPECT_TRUE(audio.stereo);
    EXPECT_TRUE(audio.mp2);
    EXPECT_TRUE(project.LiveFtp());
    EXPECT_EQ(audio.sampleRate, 48000U);
    EXPECT_EQ(audio.resolutionShift, 1U);
    EXPECT_EQ(project.ProjectText(), u"Notes");
    EXPECT_EQ(recording.audioPath, Path(u"talk07.mp2"));

    project.SetOptions({.liveFtpAllowed = false});
    record.audioFormatWord = 1;
    record.audioLayout = 7;
    record.recordingIndex = -9;
    ASSERT_TRUE(Load(7));  // leaves stereo as it is
    EXPECT_TRUE(audio.stereo);
    ASSERT_TRUE(Load(8));
    EXPECT_FALSE(audio.stereo);
    EXPECT_FALSE(project.LiveFtp());
    EXPECT_EQ(audio.resolutionShift, 2U);
    EXPECT_EQ(project.RecordingIndex(), -1);
    ASSERT_TRUE(Load(5));  // knows no layout
    EXPECT_EQ(audio.resolutionShift, 0U);
}

TEST_F(ProjectLoad, MeasuresClipsNetOfCutsFromTheLevelFileElseFromTheAudio) {
    AddWav(u"talk00", 100);
    AddLevels(u"talk00", 100, {{10, 20, 0}, {90, 95, 7}});
    AddWav(u"talk01", 50);
    AddFile(u"talk01.jvu", "not a level file");
    AddClip(u"talk00");
    AddClip(u"talk00", 15, 92);  // 20..90
    AddClip(u"talk00", 50, 1000);
    AddClip(u"talk01");
    AddClip(u"..\\talk01", 10, 20);
    ASSERT_TRUE(Load());
    EXPECT_TRUE(boxes.shown.empty());
    std::vector<std::uint32_t> lengths;
    for (std::int32_t i = 0; i < clips.Count(); ++i)
        lengths.push_back(clips.At(i).length);
    EXPECT_EQ(lengths, (std::vector<std::uint32_t>{85, 70, 45, 50, 10}));
    EXPECT_EQ(clips.At(4).folder, folder.Path());  // wherever the file came from
    EXPECT_EQ(clips.At(0).lengthSeconds, 4U);
}

TEST_F(ProjectLoad, ShowsTheCurrentClipOrTheLastRecording) {
    AddRecording(u"talk00", 40);
    AddClip(u"talk00");
    record.currentClip = 7;
    ASSERT_TRUE(Load());
    EXPECT_EQ(clips.CurrentIndex(), 0);
    record.clips.clear();
    record.recordingIndex = 1;
    ASSERT_TRUE(Load());
    EXPECT_EQ(recording.audioPath, Path(u"talk01.wav"));
}

TEST_F(ProjectLoad, SelectsTheRangeOfAClipAndDropsEmptyCuts) {
    AddWav(u"talk00", 100);
    AddLevels(u"talk00", 100, {{10, 10, 1}, {30, 40, 2}});
    AddClip(u"talk00");
    AddClip(u"talk00", 20, 60);
    record.clips[1].title = u"Intro";
    record.currentClip = 1;
    ASSERT_TRUE(Load());
    EXPECT_EQ(recording.title, u"Intro");
    EXPECT_EQ(recording.selectionStart, 20U);
    EXPECT_EQ(recording.selectionEnd, 60U);
    EXPECT_EQ(recording.sheet.cuts, (std::vector<RemovedRange>{{30, 40, 2}}));
    EXPECT_EQ(recording.sheet.levels.size(), 100U);
    ASSERT_TRUE(project.SelectClip(0));
    EXPECT_EQ(recording.selectionEnd, 0U);
    EXPECT_FALSE(project.SelectClip(2));
    AddWav(u"talk00", 0);  // no sound left
    EXPECT_FALSE(project.SelectClip(1));
    EXPECT_FALSE(project.OpenRecording(Path(u"none.wav")));
    EXPECT_EQ(clips.CurrentIndex(), 0);
    EXPECT_EQ(recording.length, 100U);
}

TEST_F(ProjectLoad, AdoptsTheBitRateOfAnMp2TakeButNotForAMereCheck) {
    std::mt19937 random(1);
    const RandomTake take(folder, u"talk00", {.mp2 = true, .kilobits = 96}, 20, random);
    record.flags = 1;
    AddClip(u"talk00");
    ASSERT_TRUE(Load());
    ASSERT_EQ(clips.Count(), 1);
    EXPECT_EQ(audio.bitrate.Index(), 3U);
    ASSERT_TRUE(project.SelectClip(0));
    EXPECT_EQ(audio.bitrate.Index(), 5U);
}

TEST_F(ProjectLoad, ARefusedFileChangesNothingAndTheOldPathComesBack) {
    AddRecording(u"talk00", 40);
    AddClip(u"talk00");
    ASSERT_TRUE(Load());
    AddFile(u"foreign.opr", "RIFF1234");
    AddFileOfVersion(u"newer.opr", 11);
    const Bytes newer = File(u"newer.opr");
    for (const auto* name : {u"foreign", u"newer"}) {
        project.SetPath(folder.Path(), name);
        EXPECT_FALSE(project.LoadProject());
    }
    EXPECT_EQ(boxes.Texts(), (Names{u"LoadProject Project Id", u"LoadProject Project Version"}));
    EXPECT_EQ(project.Name(), u"talk");
    EXPECT_EQ(ShownNames(), Names{u"talk00"});
    project.Clips().Clear();
    EXPECT_TRUE(project.SaveProject());
    EXPECT_EQ(File(u"foreign.opr").size(), 8U);
    EXPECT_EQ(File(u"newer.opr"), newer);
    EXPECT_FALSE(Exists(u"talk.opr"));
}

TEST_F(ProjectLoad, AFileRefusedAtStartUpLeavesAFreeName) {
    AddFile(u"talk.opr", "something else");
    AddProjectFile(u"talk1-", {});
    EXPECT_FALSE(project.LoadProject());
    EXPECT_EQ(project.Name(), u"talk2-");
    EXPECT_TRUE(project.SaveProject());
    RecordTake(40);
    EXPECT_EQ(StoredNames(u"talk2-.opr"), Names{u"talk2-00"});
    EXPECT_EQ(File(u"talk.opr").size(), 14U);
}

TEST_F(ProjectLoad, ANewProjectTakesItsFormatAndTextFromTheOptions) {
    AddRecording(u"talk00", 40);
    AddClip(u"talk00");
    record.publishingValue = 5;
    ASSERT_TRUE(Load());
    const auto newProject = [&](const Text& textFile) {
        project.SetOptions({.recordMp2 = true,
                            .stereo = true,
                            .sampleRateCode = 0,
                            .resolutionShift = 9,
                            .bitrateIndex = 7,
                            .useTextFile = true,
                            .textFile = Path(textFile)});
        project.SetPath(folder.Path(), u"");
        project.NewProject();
        return project.ProjectText();
    };
    AddFile(u"latin.txt", "Caf\xE9 \x80");
    EXPECT_EQ(newProject(u"latin.txt"), u"Caf\u00E9 \u20AC");
    EXPECT_EQ(project.Data().publishingValue, 0U);
    EXPECT_TRUE(clips.Empty());
    EXPECT_EQ(recording.audioPath, Path(u"default00.mp2"));
    EXPECT_EQ(recording.length, 0U);
    EXPECT_TRUE(audio.stereo);
    EXPECT_EQ(audio.resolutionShift, 2U);
    EXPECT_EQ(audio.bitrate.Index(), 7U);
    AddFile(u"utf8.txt",
            "\xEF\xBB\xBF"
            "Caf\xC3\xA9");
    EXPECT_EQ(newProject(u"utf8.txt"), u"Caf\u00E9");
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(newProject(u"none.txt"), u"");
    EXPECT_EQ(boxes.shown.size(), 1U);
}

}  // namespace
}  // namespace orma::test
