#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/mp2_header.h"
#include "audio/files/take_repair.h"
#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"
#include "support/signals.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TakeWritersTest : public ::testing::TestWithParam<bool> {
  protected:
    void Record(WriterKind kind, ByteSpan pcm) {
        std::filesystem::remove(bench_->files.folder.Native(u"take00.rec"));  // as its project does
        JStreamAudioWrite& writer = bench_->Select(kind);
        writer.Open(u"take00");
        WriteAll(writer, pcm);
        healthy_ = writer.IsOpen();
        writer.Close();
    }

    std::unique_ptr<WriterBench> bench_ = std::make_unique<WriterBench>();
    bool healthy_ = false;
};

INSTANTIATE_TEST_SUITE_P(AppendPerBlock, TakeWritersTest, ::testing::Bool());

TEST_P(TakeWritersTest, BlocksReachTheFileWhenTheyAreFullAndTheRestAtItsClose) {
    bench_->audio.appendPerBlock = GetParam();
    bench_->audio.stereo = true;
    bench_->audio.sampleRate = 48000;
    const WavFields fields{.channels = 2, .sampleRate = 48000, .blockAlign = 2};
    const Bytes pcm = Pattern(65537);
    for (const std::size_t more : {0UL, 1UL}) {
        JStreamAudioWrite& writer = bench_->Select(WriterKind::kWavFile);
        writer.Open(u"take00");
        writer.WriteSamples(pcm.data(), 65535);
        EXPECT_EQ(bench_->File(u"take00.wav").size(), 44U);
        writer.WriteSamples(&pcm[65535], 1);
        writer.WriteSamples(&pcm[65536], static_cast<std::uint32_t>(more));
        EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes(fields, ByteSpan(pcm).first(65536)));
        EXPECT_TRUE(writer.IsOpen());
        writer.Close();
        EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes(fields, ByteSpan(pcm).first(65536 + more)));
        EXPECT_FALSE(writer.IsOpen());
        std::filesystem::remove(bench_->files.folder.Native(u"take00.rec"));  // as its project does
    }
    EXPECT_THAT(bench_->files.boxes.Texts(), IsEmpty());
}

TEST_F(TakeWritersTest, TheHeaderTakesItsSampleSizeAndBlockAlignFromTheContext) {
    bench_->audio.bitsPerSample = 24;
    bench_->audio.alternativeSampleSize = true;
    bench_->context.wavTemplate.blockAlign = 3;
    Record(WriterKind::kWavFile, {});
    EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes({.bits = 24, .blockAlign = 3}, {}));
}

TEST_P(TakeWritersTest, AFailedBlockEndsTheTakeAndIsWrittenFromTheJournalOnceStorageAllows) {
    bench_->audio.appendPerBlock = GetParam();
    const Bytes pcm = Pattern(4 * 65536);
    // The fifth write is the second block: the header, a block and its two sizes come before it.
    bench_->storage.FailAt(FaultyStorage::kWrite, 5, FaultyStorage::Extent::kFromThenOn);
    Record(WriterKind::kWavFile, pcm);
    EXPECT_FALSE(healthy_);
    EXPECT_LT(bench_->File(u"take00.wav").size(), 44 + pcm.size());
    ASSERT_EQ(bench_->files.boxes.shown.size(), 1U);
    EXPECT_TRUE(bench_->files.boxes.shown[0].text.starts_with(u"WriteFile 28"));

    const Text path = bench_->files.folder.Path(u"take00.wav");
    DropTakeJournal(bench_->services, path);
    EXPECT_TRUE(bench_->Exists(u"take00.rec"));
    bench_->storage.FailAt(FaultyStorage::kWrite, 0);
    EXPECT_TRUE(RepairTake(bench_->services, path));
    EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes({}, pcm));
    DropTakeJournal(bench_->services, path);
    EXPECT_FALSE(bench_->Exists(u"take00.rec"));
}

TEST_P(TakeWritersTest, OpeningAnOpenWriterReportsItAndKeepsWhatWasRecorded) {
    bench_->audio.appendPerBlock = GetParam();
    for (const auto& [kind, file] : {std::pair{WriterKind::kWavFile, u"take00.wav"},
                                     std::pair{WriterKind::kMp2File, u"take00.mp2"}}) {
        bench_->files.boxes.shown.clear();
        for (const TextView journal : {u"take00.rec", u"take01.rec"})
            std::filesystem::remove(bench_->files.folder.Native(journal));
        JStreamAudioWrite& writer = bench_->Select(kind);
        const Bytes pcm = Pattern(5000);
        writer.Open(u"take00");
        writer.WriteSamples(pcm.data(), 5000);
        writer.Open(u"take01");
        EXPECT_FALSE(writer.IsOpen());
        const Text other = file[7] == u'w' ? u"take01.wav" : u"take01.mp2";
        EXPECT_FALSE(bench_->Exists(other));
        EXPECT_GT(bench_->File(file).size(), 44U);
        EXPECT_THAT(bench_->files.boxes.Texts(),
                    ElementsAre(bench_->files.folder.Path(file) + u" : File is open"));
        writer.Open(u"take01");
        EXPECT_TRUE(writer.IsOpen());
        writer.Close();
    }
}

TEST_F(TakeWritersTest, ClosingAfterTheFileVanishedCreatesNothing) {
    for (const bool append : {false, true}) {
        bench_->audio.appendPerBlock = append;
        std::filesystem::remove(bench_->files.folder.Native(u"take00.rec"));
        JStreamAudioWrite& writer = bench_->Select(WriterKind::kWavFile);
        writer.Open(u"take00");
        writer.WriteSamples("0123", 4);
        std::filesystem::remove(bench_->files.folder.Native(u"take00.wav"));
        writer.Close();
        EXPECT_FALSE(bench_->Exists(u"take00.wav"));
    }
    EXPECT_THAT(bench_->files.boxes.Texts(), IsEmpty());
}

TEST_P(TakeWritersTest, ATakeIsUnhealthyThatCannotBeCreatedWrittenOrEncoded) {
    bench_->audio.appendPerBlock = GetParam();
    const Bytes other = WavBytes({.dataSize = 1000}, Pattern(10));
    WriteFileBytes(bench_->files.folder.Path(u"take00.wav"), other);
    bench_->storage.FailAt(FaultyStorage::kOpen, 1);
    Record(WriterKind::kWavFile, Pattern(70000));
    EXPECT_FALSE(healthy_);
    EXPECT_EQ(bench_->File(u"take00.wav"), other);

    bench_->storage.FailAt(FaultyStorage::kWrite, 1);
    Record(WriterKind::kMp2File, AsPcm(Tone(300, 44100, 9000, 100000)));
    EXPECT_FALSE(healthy_);

    bench_->storage.FailAt(FaultyStorage::kWrite, 0);
    bench_->files.boxes.shown.clear();
    bench_->audio.bitrate.SetMp2Bitrate(11, bench_->files.report);  // 256 kbit/s in mono
    Record(WriterKind::kMp2File, Pattern(10000));
    EXPECT_FALSE(healthy_);
    EXPECT_THAT(bench_->files.boxes.Texts(), ElementsAre(u"Illegal bitrate"));
}

TEST_F(TakeWritersTest, TheSlotKeepsAWriterWhileItsKindStaysAndEndsItBeforeTheNext) {
    JStreamAudioWrite& first = bench_->Select(WriterKind::kMp2File);
    first.Open(u"take00");
    EXPECT_EQ(&bench_->Select(WriterKind::kMp2File), &first);
    first.WriteSamples(Tone(300, 44100, 9000, 3000).data(), 6000);
    for (const WriterKind kind : {WriterKind::kNone, static_cast<WriterKind>(42)}) {
        bench_->slot.SelectWriter(kind);
        EXPECT_EQ(bench_->slot.Current(), nullptr);
    }
    // The take that was open was flushed: 3000 samples are 3 frames of 192 bytes.
    const Bytes file = bench_->File(u"take00.mp2");
    ASSERT_EQ(file.size(), 3U * 192);
    const auto header = Mp2Header::ForSettings(bench_->audio).bytes;
    for (std::size_t at = 0; at < file.size(); at += 192)
        EXPECT_TRUE(std::equal(header.begin(), header.end(), &file[at]));
}

}  // namespace
}  // namespace orma::test
