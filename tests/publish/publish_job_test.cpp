#include "publish/publish_job.h"

#include <numeric>

#include <gmock/gmock.h>

#include "audio/files/vu_file.h"
#include "publish/verify.h"
#include "publish_rig.h"
#include "support/riff_chunks.h"
#include "support/sound_files.h"

namespace orma::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kPeriod44100 = 2205;  // samples of 50 ms
constexpr std::size_t kPeriod48000 = 2400;

std::string Text8(ByteSpan bytes) {
    return {bytes.begin(), bytes.end()};
}

std::uint32_t SumOf(ByteSpan bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0});
}

/// The samples are there one by one, then zeros to a frame.
void ExpectSamples(ByteSpan data, std::vector<std::int16_t> expected) {
    expected.resize((expected.size() + 1151) / 1152 * 1152);
    EXPECT_EQ(AsSamples(data), expected);
}

struct PublishJobTest : PublishTest {
    /// Nothing under the published name and no temporary file either.
    void ExpectNothingPublished() {
        EXPECT_FALSE(Exists(u"pub_talk.wav"));
        EXPECT_FALSE(Exists(u"pub_talk.wav.tmp"));
    }

    /// What the verifier found right with the publication.
    std::vector<std::string> Facts() {
        return VerifyPublishedFile(files, Path(u"pub_talk.wav")).facts;
    }

    PublishOutcome PublishToFile() { return job.MenuPublishCliplistToFile(false); }

    PublishJob job = Job();
};

/// With projects of WAV and of MP2.
struct PublishJobFormats : PublishJobTest, testing::WithParamInterface<bool> {
    PublishJobFormats() { audio.mp2 = GetParam(); }
};
INSTANTIATE_TEST_SUITE_P(Formats, PublishJobFormats, testing::Bool());

TEST_F(PublishJobTest, MakesAPcmFileOfWholeAndPartialClips) {
    // 41 periods and a third of one, which has no level but is recorded all the same.
    const auto whole = Speech(41 * kPeriod48000 + 800, 48000, 1);
    LevelSheet sheet = AddTake(u"talk00", whole, 48000);
    sheet.marks = {0, 10, 41};
    AddLevels(u"talk00", sheet);
    const auto part = Speech(60 * kPeriod48000, 48000, 1, 9000);
    sheet = AddTake(u"talk01", part, 48000);
    sheet.cuts = {{20, 30, 0}};
    AddLevels(u"talk01", sheet);
    AddClip(u"talk00", 0, 0, u"Intro");
    AddClip(u"talk01", 10, 40);
    project.SetProjectText(u"Caf\u00E9");

    ASSERT_EQ(PublishToFile(), PublishOutcome::kPublished);
    EXPECT_THAT(boxes.Texts(), IsEmpty());
    EXPECT_EQ(job.PublishedPath(), Path(u"pub_talk.wav"));
    EXPECT_THAT(progress.texts, ElementsAre(u"  Connecting...  ", u"  Publishing audio...  "));
    EXPECT_EQ(progress.range, 61U);  // 41 and 20
    EXPECT_EQ(progress.stepped, 61U);

    const Bytes file = File(u"pub_talk.wav");
    const auto chunks = RiffChunks(file);
    ASSERT_EQ(RiffIds(chunks), "bext fmt  fact data levl qlty");
    EXPECT_EQ(Text8(chunks[0].content.first(5)), std::string("Caf\xE9\0", 5));
    EXPECT_EQ(Text8(chunks[0].content.subspan(320, 18)), "2009- 1- 5 9: 7: 3");

    // At 48000 Hz nothing is converted.
    std::vector<std::int16_t> expected = whole;
    const auto append = [&](std::size_t begin, std::size_t end) {
        expected.insert(expected.end(),
                        part.begin() + static_cast<std::ptrdiff_t>(begin * kPeriod48000),
                        part.begin() + static_cast<std::ptrdiff_t>(end * kPeriod48000));
    };
    append(10, 20);
    append(30, 40);
    const ByteSpan data = chunks[3].content;
    ExpectSamples(data, expected);
    EXPECT_EQ(LoadLe<std::uint32_t>(chunks[2].content.data()), data.size() / 2);
    EXPECT_EQ(LoadLe<std::uint32_t>(&chunks[5].content[4]), SumOf(data));
    EXPECT_THAT(Text8(chunks[5].content.subspan(8)),
                HasSubstr("C=N000, TS=00:00:00:0, T=IntroM0\r\n"
                          "C=N001, TS=00:00:00:20, T=IntroM1\r\n"
                          "C=N002, TS=00:00:02:2, T=talk01\r\n"
                          "C=N003, TS=00:00:03:2, T=End\r\n"));

    EXPECT_EQ(Findings(), "");
}

TEST_F(PublishJobTest, SendsTheShortLastPeriodOfATakeThatWasCutInPlace) {
    const auto whole = Speech(40 * kPeriod48000, 48000, 1);
    AddTake(u"talk00", whole, 48000);
    // Such a take lacks its last 44 bytes, which its header still counts.
    const Bytes take = File(u"talk00.wav");
    WriteFileBytes(Path(u"talk00.wav"), ByteSpan(take).first(take.size() - 44));
    AddClip(u"talk00", 35, 40);
    ASSERT_EQ(PublishToFile(), PublishOutcome::kPublished);
    EXPECT_THAT(boxes.Texts(), IsEmpty());
    const Bytes file = File(u"pub_talk.wav");
    ExpectSamples(RiffChunks(file)[3].content,
                  {whole.begin() + 35 * kPeriod48000, whole.end() - 22});
    EXPECT_EQ(Findings(), "");
}

TEST_F(PublishJobTest, ConvertsStereoAndMonoClipsOf44100IntoOneStereoFile) {
    AddTake(u"talk00", Speech(50 * kPeriod44100, 44100, 1));
    AddTake(u"talk01", Speech(50 * kPeriod44100, 44100, 2), 44100, 2);
    AddClip(u"talk00");
    AddClip(u"talk01");

    ASSERT_EQ(PublishToFile(), PublishOutcome::kPublished);
    EXPECT_FALSE(audio.stereo) << "the channel mode is restored";
    const Bytes file = File(u"pub_talk.wav");
    const auto chunks = RiffChunks(file);
    EXPECT_EQ(LoadLe<std::uint16_t>(&chunks[1].content[2]), 2);
    EXPECT_THAT(Text8(chunks[0].content.subspan(602)),
                HasSubstr("A=PCM,F=44100,W=16,M=stereo\r\nA=PCM,F=48000,W=16,M=stereo"));
    // 5 s at 48000 Hz, up to a frame more.
    const std::size_t samples = chunks[3].content.size() / 4;
    EXPECT_GE(samples, 240000U);
    EXPECT_LT(samples, 240000U + 2 * 1152);
    // The mono clip is heard on both sides.
    for (std::size_t i = 48000; i < 48010; ++i)
        EXPECT_EQ(LoadLe<std::int16_t>(&chunks[3].content[4 * i]),
                  LoadLe<std::int16_t>(&chunks[3].content[4 * i + 2]));
    EXPECT_EQ(Findings(), "");
}

TEST_F(PublishJobTest, SendsStoredMp2FramesUnchanged) {
    audio.mp2 = true;
    audio.sampleRate = 44100;
    LevelSheet sheet = AddTake(u"talk00", Speech(200 * kPeriod48000 + 700, 48000, 1));
    sheet.cuts = {{60, 90, 0}};
    sheet.rangeStart = 10;  // as a published selection leaves it
    sheet.rangeEnd = 50;
    AddLevels(u"talk00", sheet);
    AddTake(u"talk01", Speech(100 * kPeriod48000, 48000, 1, 5000));
    AddClip(u"talk01", 20, 50);
    AddClip(u"talk00");
    // The recording on the screen has another bit rate; the clips have theirs.
    audio.bitrate.SetMp2Bitrate(7, report);

    ASSERT_EQ(PublishToFile(), PublishOutcome::kPublished);
    EXPECT_EQ(audio.bitrate.Index(), 7U);
    const Bytes file = File(u"pub_talk.wav");
    const auto chunks = RiffChunks(file);
    ASSERT_EQ(RiffIds(chunks), "bext fmt  fact mext data levl qlty");

    const Bytes first = File(u"talk01.mp2");
    const Bytes second = File(u"talk00.mp2");
    const auto frames = [](const Bytes& from, std::size_t begin, std::size_t end) {
        return ByteSpan(from).subspan(begin * 192, (end - begin) * 192);
    };
    Bytes expected;
    // Periods 20..50 are frames 41..104; 0..60 and 90 to the end are 0..125 and 187 to the last.
    for (const ByteSpan part :
         {frames(first, 41, 104), frames(second, 0, 125), frames(second, 187, second.size() / 192)})
        expected.insert(expected.end(), part.begin(), part.end());
    EXPECT_EQ(Bytes(chunks[4].content.begin(), chunks[4].content.end()), expected);
    EXPECT_EQ(LoadLe<std::uint32_t>(chunks[2].content.data()), expected.size() / 192 * 1152);
    EXPECT_EQ(LoadLe<std::uint32_t>(&chunks[6].content[4]), SumOf(expected));
    EXPECT_THAT(Text8(chunks[0].content.subspan(602)),
                HasSubstr("A=PCM,F=44100,W=16,M=mono\r\nA=MPEG1L2,F=48000,B=64,W=16,M=mono"));
    EXPECT_EQ(progress.range, 200U * 125 / 60 * 192 >> 14);
    EXPECT_EQ(progress.stepped, expected.size() >> 14);
    EXPECT_EQ(Findings(), "");
    EXPECT_THAT(Facts(), Contains("all 200 values of 'levl' fit the sound"));
    EXPECT_THAT(Facts(), Contains("2 cue lines in order, the last one 'End'"));
}

TEST_F(PublishJobTest, PublishesTheSelectionOfTheCurrentRecording) {
    LevelSheet sheet = AddTake(u"talk00", Speech(80 * kPeriod44100, 44100, 1));
    sheet.cuts = {{15, 15, 0}, {30, 35, 0}};
    ASSERT_TRUE(project.OpenRecording(Path(u"talk00.wav")));
    recording.sheet = sheet;
    recording.selectionStart = 10;
    recording.selectionEnd = 50;

    ASSERT_EQ(job.MenuPublishClipToFile(false), PublishOutcome::kPublished);
    const auto levels = ReadVuFile(files, Path(u"talk00.jvu"));
    ASSERT_TRUE(levels);
    EXPECT_EQ(levels->rangeStart, 10U);
    EXPECT_EQ(levels->rangeEnd, 50U);
    EXPECT_THAT(levels->cuts, ElementsAre(RemovedRange{30, 35, 0})) << "empty cuts are dropped";
    const Bytes file = File(u"pub_talk.wav");
    EXPECT_EQ(LoadLe<std::uint32_t>(&RiffChunks(file)[4].content[20]), 35U);
    EXPECT_EQ(Findings(), "");
}

TEST_P(PublishJobFormats, MeasuresLevelsWhereTheLevelFileIsMissing) {
    AddSpeech(u"talk00", 80);
    ASSERT_EQ(storage.Delete(Path(u"talk00.jvu")), 0U);
    EXPECT_EQ(PublishToFile(), PublishOutcome::kPublished);
    EXPECT_EQ(Findings(), "");
    EXPECT_THAT(Facts(), Contains("all 80 values of 'levl' fit the sound"));
}

TEST_P(PublishJobFormats, LeavesNothingWhenCancelledAndTellsTheUser) {
    AddSpeech(u"talk00", 400);
    progress.cancelAt = 2;
    EXPECT_EQ(PublishToFile(), PublishOutcome::kCancelled);
    ExpectNothingPublished();
    EXPECT_EQ(job.PublishedPath(), u"");
    EXPECT_EQ(boxes.shown.size(), 1U);
    progress.cancelAt = 0;
    EXPECT_EQ(PublishToFile(), PublishOutcome::kPublished);
}

TEST_F(PublishJobTest, FailsOnRecordingsThatLackSound) {
    audio.mp2 = true;
    AddSpeech(u"talk00", 200);
    const Bytes good = File(u"talk00.mp2");

    // A frame in the middle that is none.
    Bytes damaged = good;
    damaged[100 * 192] = 0;
    WriteFileBytes(Path(u"talk00.mp2"), damaged);
    EXPECT_EQ(PublishToFile(), PublishOutcome::kFailed);
    // Half a second is missing at the end.
    WriteFileBytes(Path(u"talk00.mp2"), ByteSpan(good).first(good.size() - 21 * 192));
    EXPECT_EQ(PublishToFile(), PublishOutcome::kFailed);
    // Another bit rate than the first clip's.
    WriteFileBytes(Path(u"talk00.mp2"), good);
    audio.bitrate.SetMp2Bitrate(5, report);
    AddSpeech(u"talk01", 30);
    EXPECT_EQ(PublishToFile(), PublishOutcome::kFailed);
    EXPECT_THAT(boxes.Texts(),
                ElementsAre(u"This recording is damaged:\n" + Path(u"talk00.mp2"),
                            u"The sound of this recording ends early:\n" + Path(u"talk00.mp2"),
                            u"Wrong bitrate."));
    ExpectNothingPublished();
}

TEST_F(PublishJobTest, FailsOnClipsThatMakeNoFile) {
    AddSpeech(u"talk00", 30);
    AddTake(u"talk01", Speech(30 * kPeriod48000, 48000, 1), 48000);
    AddTake(u"talk02", Speech(30 * 2 * kPeriod48000, 96000, 1), 96000);
    LevelSheet sheet = AddTake(u"talk03", Speech(30 * kPeriod44100, 44100, 1));
    sheet.cuts = {{0, 30, 0}};
    AddLevels(u"talk03", sheet);
    AddClip(u"talk01");
    EXPECT_EQ(PublishToFile(), PublishOutcome::kFailed);
    for (const Text name : {u"talk02", u"talk03"}) {
        clips.Clear();
        AddClip(name);
        EXPECT_EQ(PublishToFile(), PublishOutcome::kFailed);
    }
    EXPECT_THAT(boxes.Texts(), ElementsAre(u"Wrong sample-rate",
                                           u"Sample-rate= 96 KHz.\nYou can not publish at\n"
                                           u"sample-rates higher than 48 KHz.",
                                           u"Nothing recorded or selected"));
    EXPECT_EQ(audio.sampleRate, 44100U) << "the audio state is restored";
    EXPECT_EQ(job.Publish(ClipList(), u"talk", true, false), PublishOutcome::kRefused);
    ExpectNothingPublished();
}

}  // namespace
}  // namespace orma::test
