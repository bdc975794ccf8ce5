#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/take_repair.h"
#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;

struct TakeWritersTest : testing::TestWithParam<bool>, WriterBench {
    TakeWritersTest() { audio.appendPerBlock = GetParam(); }

    /// True when the writer is healthy to the end.
    bool Record(WriterKind kind, ByteSpan pcm) {
        RemoveJournal();
        JStreamAudioWrite& writer = Select(kind);
        writer.Open(u"take00");
        WriteAll(writer, pcm);
        const bool healthy = writer.IsOpen();
        writer.Close();
        return healthy;
    }

    const Text path = files.folder.Path(u"take00.wav");
};

INSTANTIATE_TEST_SUITE_P(AppendPerBlock, TakeWritersTest, ::testing::Bool());

TEST_P(TakeWritersTest, BlocksReachTheFileWhenTheyAreFullAndTheRestAtItsClose) {
    audio.stereo = true;
    audio.sampleRate = 48000;
    const WavFields fields{.channels = 2, .sampleRate = 48000, .blockAlign = 2};
    const Bytes pcm = Pattern(65537);
    for (const std::uint32_t more : {0, 1}) {
        RemoveJournal();
        JStreamAudioWrite& writer = Select(WriterKind::kWavFile);
        writer.Open(u"take00");
        writer.WriteSamples(pcm.data(), 65535);
        EXPECT_EQ(File(u"take00.wav").size(), 44U);
        writer.WriteSamples(&pcm[65535], 1);
        writer.WriteSamples(&pcm[65536], more);
        EXPECT_EQ(File(u"take00.wav"), WavBytes(fields, ByteSpan(pcm).first(65536)));
        EXPECT_TRUE(writer.IsOpen());
        writer.Close();
        EXPECT_EQ(File(u"take00.wav"), WavBytes(fields, ByteSpan(pcm).first(65536 + more)));
        EXPECT_FALSE(writer.IsOpen());
    }
    EXPECT_TRUE(files.boxes.shown.empty());
}

TEST_P(TakeWritersTest, AFailedBlockEndsTheTakeAndIsWrittenFromTheJournalOnceStorageAllows) {
    const Bytes pcm = Pattern(4 * 65536);
    // The fifth write is the second block: the header, a block and its two sizes come before it.
    storage.FailAt(FaultyStorage::kWrite, 5, FaultyStorage::Extent::kFromThenOn);
    EXPECT_FALSE(Record(WriterKind::kWavFile, pcm));
    EXPECT_LT(File(u"take00.wav").size(), 44 + pcm.size());
    ASSERT_EQ(files.boxes.shown.size(), 1U);
    EXPECT_TRUE(files.boxes.shown[0].text.starts_with(u"WriteFile 28"));

    DropTakeJournal(services, path);
    EXPECT_TRUE(Exists(u"take00.rec"));
    storage.FailAt(FaultyStorage::kWrite, 0);
    EXPECT_TRUE(RepairTake(services, path));
    EXPECT_EQ(File(u"take00.wav"), WavBytes({}, pcm));
    DropTakeJournal(services, path);
    EXPECT_FALSE(Exists(u"take00.rec"));
}

TEST_P(TakeWritersTest, OpeningAnOpenWriterEndsItsTakeAndBeginsNone) {
    const Bytes pcm = Pattern(5000);
    for (const auto& [kind, extension] :
         {std::pair{WriterKind::kWavFile, u".wav"}, std::pair{WriterKind::kMp2File, u".mp2"}}) {
        const Text name = Text(u"take00") + extension;
        EXPECT_TRUE(Record(kind, pcm));
        const Bytes take = File(name);
        RemoveJournal();
        ASSERT_EQ(storage.Delete(files.folder.Path(name)), 0U);
        files.boxes.shown.clear();
        JStreamAudioWrite& writer = Select(kind);
        writer.Open(u"take00");
        WriteAll(writer, pcm);
        writer.Open(u"take01");
        EXPECT_FALSE(writer.IsOpen());
        EXPECT_EQ(File(name), take);
        EXPECT_FALSE(Exists(Text(u"take01") + extension));
        EXPECT_THAT(files.boxes.Texts(), ElementsAre(files.folder.Path(name) + u" : File is open"));
    }
}

TEST_P(TakeWritersTest, ClosingAfterTheFileVanishedCreatesNothing) {
    JStreamAudioWrite& writer = Select(WriterKind::kWavFile);
    writer.Open(u"take00");
    writer.WriteSamples("0123", 4);
    std::filesystem::remove(files.folder.Native(u"take00.wav"));
    writer.Close();
    EXPECT_FALSE(Exists(u"take00.wav"));
    EXPECT_TRUE(files.boxes.shown.empty());
}

TEST_P(TakeWritersTest, ATakeIsUnhealthyThatCannotBeCreatedWrittenOrEncoded) {
    const Bytes other = WavBytes({.dataSize = 1000}, Pattern(10));
    WriteFileBytes(path, other);
    storage.FailAt(FaultyStorage::kOpen, 1);
    EXPECT_FALSE(Record(WriterKind::kWavFile, Pattern(70000)));
    EXPECT_EQ(File(u"take00.wav"), other);

    storage.FailAt(FaultyStorage::kWrite, 1);
    EXPECT_FALSE(Record(WriterKind::kMp2File, Pattern(200000)));

    storage.FailAt(FaultyStorage::kWrite, 0);
    files.boxes.shown.clear();
    audio.bitrate.SetMp2Bitrate(11, files.report);  // 256 kbit/s in mono
    EXPECT_FALSE(Record(WriterKind::kMp2File, Pattern(10000)));
    EXPECT_THAT(files.boxes.Texts(), ElementsAre(u"Illegal bitrate"));
}

TEST_P(TakeWritersTest, WithoutAJournalATakeIsRecordedAllTheSame) {
    storage.FailAt(FaultyStorage::kMap, 1);
    const Bytes pcm = Pattern(70000);
    EXPECT_TRUE(Record(WriterKind::kWavFile, pcm));
    EXPECT_EQ(File(u"take00.wav"), WavBytes({}, pcm));
    EXPECT_FALSE(Exists(u"take00.rec"));
}

}  // namespace
}  // namespace orma::test
