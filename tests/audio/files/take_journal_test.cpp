#include "audio/files/take_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/level_sheet.h"
#include "audio/files/reader_bench.h"
#include "audio/files/take_repair.h"
#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TakeJournalTest : public ::testing::TestWithParam<bool> {
  protected:
    /// Leaves in folder "b" what a kill would leave of the take that is being written.
    void Kill() {
        std::filesystem::remove_all(killed_.Native());
        std::filesystem::copy(bench_.files.folder.Native(), killed_.Native());
    }
    [[nodiscard]] Bytes Recovered(const Text& file) {
        RepairTake(bench_.services, killed_.Path(file));
        return ReadFileBytes(killed_.Path(file));
    }
    /// A killed WAV take of `pcm`, whose last part is staged.
    void LeaveTake(ByteSpan pcm) {
        JStreamAudioWrite& writer = bench_.Select(WriterKind::kWavFile);
        writer.Open(u"take00");
        WriteAll(writer, pcm);
        bench_.context.journal.AddMark(7);
        bench_.context.journal.AddMark(9);
        Kill();
        writer.Close();
    }

    WriterBench bench_;
    TempFolder killed_;
};

INSTANTIATE_TEST_SUITE_P(AppendPerBlock, TakeJournalTest, ::testing::Bool());

TEST_P(TakeJournalTest, AWavTakeThatIsKilledHasEverySampleThatTheWriterWasGiven) {
    bench_.audio.appendPerBlock = GetParam();
    const Bytes pcm = Pattern(100 * 4410);
    JStreamAudioWrite& writer = bench_.Select(WriterKind::kWavFile);
    writer.Open(u"take00");
    for (std::size_t end = 4410; end <= pcm.size(); end += 4410) {
        writer.WriteSamples(&pcm[end - 4410], 4410);
        if (end % (7 * 4410) != 0 && end % 65536 > 4410) continue;
        Kill();
        // Already before the recovery the file is a whole one.
        const Bytes left = ReadFileBytes(killed_.Path(u"take00.wav"));
        ASSERT_EQ(left, WavBytes({}, ByteSpan(pcm).first(left.size() - 44)));
        ASSERT_EQ(Recovered(u"take00.wav"), WavBytes({}, ByteSpan(pcm).first(end)));
        ASSERT_EQ(Recovered(u"take00.wav").size(), 44 + end) << "a second time";
    }
    writer.Close();
}

TEST_P(TakeJournalTest, AnMp2TakeThatIsKilledHasEveryFrameThatWasEncoded) {
    bench_.audio.appendPerBlock = GetParam();
    const Samples voice = ExtremeNoise(1, 20 * 44100);
    const ByteSpan pcm = AsPcm(voice);
    JStreamAudioWrite& writer = bench_.Select(WriterKind::kMp2File);
    writer.Open(u"take00");
    Bytes recovered;
    for (std::size_t end = 4410; end <= pcm.size(); end += 4410) {
        writer.WriteSamples(&pcm[end - 4410], 4410);
        if (end % (33 * 4410) != 0) continue;
        Kill();
        const std::size_t before = recovered.size();
        recovered = Recovered(u"take00.mp2");
        EXPECT_EQ(recovered.size(), bench_.encoder.Frames() * 192);
        EXPECT_GT(recovered.size(), before);
    }
    writer.Close();
    const Bytes whole = bench_.File(u"take00.mp2");
    ASSERT_LE(recovered.size(), whole.size());
    EXPECT_TRUE(std::equal(recovered.begin(), recovered.end(), whole.begin()));
}

TEST_F(TakeJournalTest, WhatAPowerCutTookFromTheTakeComesFromTheJournalIfItGoesThatFar) {
    const Bytes pcm = Pattern(5 * 65536 + 30000);
    const Bytes whole = WavBytes({}, pcm);
    LeaveTake(pcm);
    const Bytes left = ReadFileBytes(killed_.Path(u"take00.wav"));
    ASSERT_EQ(left.size(), 44U + 5 * 65536);
    // The journal holds the last four blocks, the staged one among them.
    for (const std::size_t lost : {0U, 1U, 65536U, 100000U, 3 * 65536U}) {
        WriteFileBytes(killed_.Path(u"take00.wav"), ByteSpan(left).first(left.size() - lost));
        EXPECT_EQ(Recovered(u"take00.wav"), whole) << lost;
        EXPECT_EQ(Recovered(u"take00.wav"), whole) << "a second time";
    }
    // The block that was being written may be there in length alone.
    Bytes zeros = left;
    zeros.resize(left.size() + 20000);
    WriteFileBytes(killed_.Path(u"take00.wav"), zeros);
    EXPECT_EQ(Recovered(u"take00.wav"), whole);
    // What lies too far back cannot be joined; the sound before it stays.
    const std::size_t kept = 44 + 65536;
    WriteFileBytes(killed_.Path(u"take00.wav"), ByteSpan(left).first(kept));
    EXPECT_EQ(Recovered(u"take00.wav"), WavBytes({}, ByteSpan(pcm).first(65536)));
}

TEST_F(TakeJournalTest, AFileThatIsNotTheJournalsTakeStaysAsItIs) {
    const Bytes pcm = Pattern(2 * 65536 + 30000);
    LeaveTake(pcm);
    const Bytes left = ReadFileBytes(killed_.Path(u"take00.wav"));
    Bytes edited = WavBytes({}, ByteSpan(pcm).subspan(8, 100000));
    const std::pair<const char16_t*, Bytes> others[] = {
        {u"take00.wav", edited},
        {u"take00.wav", WavBytes({}, Bytes(70000, 'x'))},
        {u"take00.mp2", left},
    };
    for (const auto& [name, bytes] : others) {
        WriteFileBytes(killed_.Path(name), bytes);
        EXPECT_EQ(Recovered(name), bytes);
        EXPECT_NE(DropTakeJournal(bench_.services, killed_.Path(name)), JournalFate::kWaits);
    }
    EXPECT_TRUE(bench_.files.storage.Exists(killed_.Path(u"take00.rec")));
    // Its beginning, or nothing but room for it, is the take.
    for (const Bytes& bytes :
         {WavBytes({}, ByteSpan(pcm).first(10)), Bytes(2 * 65536), Bytes(20)}) {
        WriteFileBytes(killed_.Path(u"take00.wav"), bytes);
        EXPECT_EQ(Recovered(u"take00.wav"), WavBytes({}, pcm));
    }
    std::filesystem::remove(killed_.Native(u"take00.wav"));
    EXPECT_EQ(Recovered(u"take00.wav"), WavBytes({}, pcm));
    EXPECT_EQ(DropTakeJournal(bench_.services, killed_.Path(u"take00.wav")), JournalFate::kGone);
}

TEST_F(TakeJournalTest, ADamagedJournalBringsInNothing) {
    const Bytes pcm = Pattern(3000);
    LeaveTake(pcm);
    const Bytes whole = ReadFileBytes(killed_.Path(u"take00.rec"));
    ASSERT_EQ(whole.size(), 8192U + 4 * 65536);
    const auto changed = [&](std::size_t offset, std::uint32_t value) {
        Bytes file = whole;
        StoreLe(&file[offset], value);
        return DecodeTakeJournal(file);
    };
    const auto intact = DecodeTakeJournal(whole);
    ASSERT_TRUE(intact);
    EXPECT_EQ(intact->sound.size(), 44 + pcm.size());
    EXPECT_EQ(intact->position, 0U);
    EXPECT_THAT(intact->marks, ElementsAre(7, 9));
    // Magic, version, ring, kind and shift make it another file; places and sound that disagree
    // cost the sound alone.
    for (const std::size_t offset : {0U, 4U, 8U, 12U, 56U})
        EXPECT_FALSE(changed(offset, 0xFFFFFFFF)) << offset;
    for (const std::size_t offset : {24U, 28U, 8192U + 50, 8192U + 3040}) {
        const auto content = changed(offset, 0xFFFFFFF0);
        ASSERT_TRUE(content) << offset;
        EXPECT_THAT(content->sound, IsEmpty()) << offset;
        EXPECT_THAT(content->marks, ElementsAre(7, 9));
    }
    EXPECT_FALSE(DecodeTakeJournal(ByteSpan(whole).first(whole.size() - 1)));
    EXPECT_EQ(changed(64, 0xFFFFFFFF)->marks.size(), LevelSheet::kMaxMarks);

    const Text foreign = killed_.Path(u"take00.rec");
    for (const Bytes& bytes :
         {Bytes(10, 'x'), Bytes(3U << 20, 'x'), Bytes(8192 + 32768, 0), Bytes()}) {
        WriteFileBytes(foreign, bytes);
        DropTakeJournal(bench_.services, killed_.Path(u"take00.wav"));
        EXPECT_TRUE(bench_.files.storage.Exists(foreign));
        EXPECT_EQ(ReadFileBytes(foreign), bytes);
    }
}

TEST_F(TakeJournalTest, ASecondRecordingOfTheSameTakeIsRefused) {
    WriterBench second;
    second.context.recordingFolder = bench_.files.folder.Path();
    for (const WriterKind kind : {WriterKind::kWavFile, WriterKind::kMp2File}) {
        bench_.audio.appendPerBlock = second.audio.appendPerBlock = true;
        JStreamAudioWrite& first = bench_.Select(kind);
        const Samples voice = ExtremeNoise(1, 60000);
        first.Open(u"take00");
        first.WriteSamples(voice.data(), 60000);
        JStreamAudioWrite& other = second.Select(kind);
        other.Open(u"take00");
        EXPECT_FALSE(other.IsOpen());
        other.Close();
        ASSERT_EQ(second.files.boxes.shown.size(), 1U);
        EXPECT_TRUE(second.files.boxes.shown[0].text.starts_with(u"Cannot open file : "));
        second.files.boxes.shown.clear();
        first.WriteSamples(&voice[30000], 60000);
        EXPECT_TRUE(first.IsOpen());
        first.Close();
        std::filesystem::remove(bench_.files.folder.Native(u"take00.rec"));
    }
    EXPECT_EQ(bench_.File(u"take00.wav").size(), 44U + 120000);
}

TEST_F(TakeJournalTest, ATakeThatIsBeingRecordedIsLeftAlone) {
    bench_.audio.appendPerBlock = true;  // the take itself is closed between its blocks
    JStreamAudioWrite& writer = bench_.Select(WriterKind::kWavFile);
    const Bytes pcm = Pattern(5000);
    writer.Open(u"take00");
    writer.WriteSamples(pcm.data(), 5000);
    const Text path = bench_.files.folder.Path(u"take00.wav");
    EXPECT_TRUE(IsBeingRecorded(bench_.storage, path));
    EXPECT_FALSE(RepairTake(bench_.services, path));
    DropTakeJournal(bench_.services, path);
    EXPECT_TRUE(bench_.Exists(u"take00.rec"));
    EXPECT_EQ(bench_.File(u"take00.wav").size(), 44U);
    writer.Close();
    EXPECT_FALSE(IsBeingRecorded(bench_.storage, path));
    EXPECT_EQ(bench_.File(u"take00.wav"), WavBytes({}, pcm));
}

TEST_F(TakeJournalTest, WithoutAJournalATakeIsRecordedAllTheSame) {
    bench_.storage.FailAt(FaultyStorage::kMap, 1);
    JStreamAudioWrite& writer = bench_.Select(WriterKind::kWavFile);
    const Bytes pcm = Pattern(70000);
    writer.Open(u"take00");
    writer.WriteSamples(pcm.data(), 70000);
    EXPECT_TRUE(writer.IsOpen());
    writer.Close();
    EXPECT_EQ(bench_.File(u"take00.wav"), WavBytes({}, pcm));
    EXPECT_FALSE(bench_.Exists(u"take00.rec"));
}

}  // namespace
}  // namespace orma::test
