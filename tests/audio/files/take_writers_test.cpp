#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/mp2_header.h"
#include "audio/files/signals.h"
#include "audio/files/take_repair.h"
#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TakeWritersTest : public ::testing::TestWithParam<bool> {
  protected:
    /// A whole take from `pcm` in buffers of `buffer` bytes.
    void Record(WriterKind kind, ByteSpan pcm, std::size_t buffer = 4410) {
        std::filesystem::remove(bench_->files.folder.Native(u"take00.rec"));  // as its project does
        JStreamAudioWrite& writer = bench_->Select(kind);
        writer.Open(u"take00");
        for (; !pcm.empty(); pcm = pcm.subspan(std::min(buffer, pcm.size()))) {
            const auto bytes = static_cast<std::uint32_t>(std::min(buffer, pcm.size()));
            writer.WriteSamples(pcm.data(), bytes);
        }
        healthy_ = writer.IsOpen();
        writer.Close();
    }

    std::unique_ptr<WriterBench> bench_ = std::make_unique<WriterBench>();
    bool healthy_ = false;
};

INSTANTIATE_TEST_SUITE_P(AppendPerBlock, TakeWritersTest, ::testing::Bool());

TEST_P(TakeWritersTest, AWavTakeIsHeaderAndPcmWhateverItsLength) {
    bench_->audio.appendPerBlock = GetParam();
    bench_->audio.stereo = true;
    bench_->audio.sampleRate = 48000;
    for (const std::size_t size : {0UL, 4UL, 65532UL, 65536UL, 65540UL, 3 * 65536UL, 200000UL}) {
        const Bytes pcm = Pattern(size);
        Record(WriterKind::kWavFile, pcm);
        EXPECT_EQ(bench_->File(u"take00.wav"),
                  WavBytes({.channels = 2, .sampleRate = 48000, .blockAlign = 2}, pcm))
            << size;
        EXPECT_TRUE(healthy_);
    }
    EXPECT_THAT(bench_->files.boxes.Texts(), IsEmpty());
}

TEST_P(TakeWritersTest, BlocksReachTheFileWhenTheyAreFull) {
    bench_->audio.appendPerBlock = GetParam();
    JStreamAudioWrite& writer = bench_->Select(WriterKind::kWavFile);
    writer.Open(u"take00");
    const Bytes pcm = Pattern(65537);
    writer.WriteSamples(pcm.data(), 65535);
    EXPECT_EQ(bench_->File(u"take00.wav").size(), 44U);
    writer.WriteSamples(&pcm[65535], 1);
    EXPECT_EQ(bench_->File(u"take00.wav").size(), 44U + 65536);
    writer.WriteSamples(&pcm[65536], 1);
    EXPECT_EQ(bench_->File(u"take00.wav").size(), 44U + 65536);
    EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes({}, ByteSpan(pcm).first(65536)));
    writer.Close();
    EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes({}, pcm));
    EXPECT_FALSE(writer.IsOpen());
}

TEST_F(TakeWritersTest, TheHeaderTakesItsSampleSizeAndBlockAlignFromTheContext) {
    bench_->audio.bitsPerSample = 24;
    Record(WriterKind::kWavFile, {});
    EXPECT_EQ(bench_->File(u"take00.wav"), WavBytes({.bits = 16}, {}));
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

TEST_P(TakeWritersTest, EveryFaultKeepsTheSoundBeforeIt) {
    const Bytes pcm = Pattern(2 * 65536 + 100);
    constexpr unsigned kFaults = FaultyStorage::kOpen | FaultyStorage::kWrite;
    bench_->audio.appendPerBlock = GetParam();
    bench_->storage.FailAt(kFaults, 0);
    Record(WriterKind::kWavFile, pcm);
    const std::size_t calls = bench_->storage.Count();
    for (std::size_t n = 1; n <= calls; ++n) {
        std::filesystem::remove(bench_->files.folder.Native(u"take00.wav"));
        bench_->storage.FailAt(kFaults, n, FaultyStorage::Extent::kFromThenOn);
        Record(WriterKind::kWavFile, pcm);
        ASSERT_TRUE(bench_->storage.HasFailed());
        // A failed append is traced alone; the recorder finds the writer unhealthy.
        EXPECT_TRUE(!healthy_ || !bench_->files.boxes.shown.empty() || GetParam()) << n;
        bench_->files.boxes.shown.clear();
        if (!bench_->Exists(u"take00.wav")) continue;
        const Bytes file = bench_->File(u"take00.wav");
        // Everything behind the header is the beginning of the sound; nothing is written twice.
        const std::size_t sound = file.size() < 44 ? 0 : file.size() - 44;
        ASSERT_LE(sound, pcm.size());
        EXPECT_TRUE(std::equal(pcm.begin(), pcm.begin() + static_cast<long>(sound),
                               file.begin() + static_cast<long>(file.size() - sound)))
            << n;
    }
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

TEST_F(TakeWritersTest, ATakeThatCannotBeCreatedIsUnhealthyAndTouchesNoOtherFile) {
    const Bytes other = WavBytes({.dataSize = 1000}, Pattern(10));
    WriteFileBytes(bench_->files.folder.Path(u"take00.wav"), other);
    bench_->storage.FailAt(FaultyStorage::kOpen, 1);
    Record(WriterKind::kWavFile, Pattern(70000));
    EXPECT_FALSE(healthy_);
    EXPECT_EQ(bench_->File(u"take00.wav"), other);
}

TEST_P(TakeWritersTest, AnMp2TakeIsWholeFramesThatTheSettingsDescribe) {
    bench_->audio.appendPerBlock = GetParam();
    for (const bool stereo : {false, true}) {
        for (const bool external : {false, true}) {
            std::filesystem::remove(bench_->files.folder.Native(u"take00.mp2"));
            bench_->audio.stereo = stereo;
            bench_->audio.sampleRate = external ? 48000 : 44100;
            bench_->audio.bitrate.SetMp2Bitrate(7, bench_->files.report);
            const std::size_t samples = external ? 96000 : 88200;  // two seconds
            const Samples voice = Tone(440, external ? 48000 : 44100, 8000, samples);
            Record(WriterKind::kMp2File, AsPcm(stereo ? Interleave(voice, voice) : voice));
            EXPECT_TRUE(healthy_);
            const Bytes file = bench_->File(u"take00.mp2");
            // 96000 samples at 48000 Hz are 84 frames of 384 bytes at 128 kbit/s.
            ASSERT_EQ(file.size(), 84U * 384);
            const Mp2Header expected = Mp2Header::ForSettings(bench_->audio);
            for (std::size_t at = 0; at < file.size(); at += 384)
                ASSERT_TRUE(std::equal(expected.bytes.begin(), expected.bytes.begin() + 3,
                                       file.begin() + static_cast<long>(at)));
        }
    }
}

TEST_P(TakeWritersTest, AnMp2TakeIsUnhealthyAfterAFailedWriteAndWithoutAnEncoder) {
    bench_->audio.appendPerBlock = GetParam();
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
    EXPECT_TRUE(first.IsOpen());
    const Samples voice = Tone(300, 44100, 9000, 3000);
    first.WriteSamples(voice.data(), 6000);
    bench_->slot.SelectWriter(WriterKind::kNone);
    EXPECT_EQ(bench_->slot.Current(), nullptr);
    // The take that was open was flushed: 3000 samples are 3 frames of 192 bytes.
    EXPECT_EQ(bench_->File(u"take00.mp2").size(), 3U * 192);
    bench_->slot.SelectWriter(static_cast<WriterKind>(42));
    EXPECT_EQ(bench_->slot.Current(), nullptr);
    EXPECT_EQ(bench_->slot.Kind(), static_cast<WriterKind>(42));
}

}  // namespace
}  // namespace orma::test
