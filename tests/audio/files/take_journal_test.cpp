#include "audio/files/take_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/level_sheet.h"
#include "audio/files/take_repair.h"
#include "audio/files/wav_bytes.h"
#include "audio/files/writer_bench.h"
#include "support/signals.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct TakeJournalTest : testing::TestWithParam<bool>, WriterBench {
    JStreamAudioWrite& Begin(WriterKind kind) {
        JStreamAudioWrite& writer = Select(kind);
        writer.Open(u"take00");
        return writer;
    }
    /// Leaves in another folder what a kill would leave of the take that is being written.
    void Kill() {
        std::filesystem::remove_all(killed.Native());
        std::filesystem::copy(files.folder.Native(), killed.Native());
    }
    [[nodiscard]] Bytes Recovered(const Text& file = u"take00.wav") {
        RepairTake(services, killed.Path(file));
        return ReadFileBytes(killed.Path(file));
    }
    /// A killed WAV take of `pcm`, whose last part is staged.
    void LeaveTake(ByteSpan pcm) {
        WriteAll(Begin(WriterKind::kWavFile), pcm);
        context.journal.AddMark(7);
        context.journal.AddMark(9);
        Kill();
        slot.SelectWriter(WriterKind::kNone);
    }

    TempFolder killed;
    const Text path = killed.Path(u"take00.wav");
};

INSTANTIATE_TEST_SUITE_P(AppendPerBlock, TakeJournalTest, ::testing::Bool());

TEST_P(TakeJournalTest, AWavTakeThatIsKilledHasEverySampleThatTheWriterWasGiven) {
    audio.appendPerBlock = GetParam();
    const Bytes pcm = Pattern(100 * 4410);
    JStreamAudioWrite& writer = Begin(WriterKind::kWavFile);
    for (std::size_t end = 4410; end <= pcm.size(); end += 4410) {
        writer.WriteSamples(&pcm[end - 4410], 4410);
        if (end % (7 * 4410) != 0 && end % 65536 > 4410) continue;
        Kill();
        // Already before the recovery the file is a whole one.
        const Bytes left = ReadFileBytes(path);
        ASSERT_EQ(left, WavBytes({}, ByteSpan(pcm).first(left.size() - 44)));
        ASSERT_EQ(Recovered(), WavBytes({}, ByteSpan(pcm).first(end)));
        ASSERT_EQ(Recovered().size(), 44 + end) << "a second time";
    }
}

TEST_P(TakeJournalTest, AnMp2TakeThatIsKilledHasEveryFrameThatWasEncoded) {
    audio.appendPerBlock = GetParam();
    const Bytes pcm = Pattern(400 * 4410);
    JStreamAudioWrite& writer = Begin(WriterKind::kMp2File);
    Bytes recovered;
    for (std::size_t end = 4410; end <= pcm.size(); end += 4410) {
        writer.WriteSamples(&pcm[end - 4410], 4410);
        if (end % (33 * 4410) != 0) continue;
        Kill();
        const std::size_t before = recovered.size();
        recovered = Recovered(u"take00.mp2");
        EXPECT_EQ(recovered.size(), encoder.Frames() * 192);
        EXPECT_GT(recovered.size(), before);
    }
    writer.Close();
    Bytes whole = File(u"take00.mp2");
    ASSERT_LE(recovered.size(), whole.size());
    whole.resize(recovered.size());
    EXPECT_EQ(recovered, whole);
}

TEST_F(TakeJournalTest, WhatAPowerCutTookFromTheTakeComesFromTheJournalIfItGoesThatFar) {
    const Bytes pcm = Pattern(5 * 65536 + 30000);
    const Bytes whole = WavBytes({}, pcm);
    LeaveTake(pcm);
    const Bytes left = ReadFileBytes(path);
    ASSERT_EQ(left.size(), 44U + 5 * 65536);
    // The journal holds the last four blocks, the staged one among them.
    for (const std::size_t lost : {0U, 1U, 65536U, 100000U, 3 * 65536U}) {
        WriteFileBytes(path, ByteSpan(left).first(left.size() - lost));
        EXPECT_EQ(Recovered(), whole) << lost;
        EXPECT_EQ(Recovered(), whole) << "a second time";
    }
    // The block that was being written may be there in length alone.
    Bytes zeros = left;
    zeros.resize(left.size() + 20000);
    WriteFileBytes(path, zeros);
    EXPECT_EQ(Recovered(), whole);
    // What lies too far back cannot be joined; the sound before it stays.
    WriteFileBytes(path, ByteSpan(left).first(44 + 65536));
    EXPECT_EQ(Recovered(), WavBytes({}, ByteSpan(pcm).first(65536)));
}

TEST_F(TakeJournalTest, AFileThatIsNotTheJournalsTakeStaysAsItIs) {
    const Bytes pcm = Pattern(2 * 65536 + 30000);
    LeaveTake(pcm);
    const std::pair<Text, Bytes> others[] = {
        {u"take00.mp2", ReadFileBytes(path)},
        {u"take00.wav", WavBytes({}, ByteSpan(pcm).subspan(8, 100000))},
        {u"take00.wav", WavBytes({}, Bytes(70000, 'x'))},
    };
    for (const auto& [name, bytes] : others) {
        WriteFileBytes(killed.Path(name), bytes);
        EXPECT_EQ(Recovered(name), bytes);
        EXPECT_NE(DropTakeJournal(services, killed.Path(name)), JournalFate::kWaits);
    }
    EXPECT_TRUE(storage.Exists(killed.Path(u"take00.rec")));
    // Its beginning, or nothing but room for it, is the take.
    for (const Bytes& bytes :
         {WavBytes({}, ByteSpan(pcm).first(10)), Bytes(2 * 65536), Bytes(20)}) {
        WriteFileBytes(path, bytes);
        EXPECT_EQ(Recovered(), WavBytes({}, pcm));
    }
    std::filesystem::remove(killed.Native(u"take00.wav"));
    EXPECT_EQ(Recovered(), WavBytes({}, pcm));
    EXPECT_EQ(DropTakeJournal(services, path), JournalFate::kGone);
}

TEST_F(TakeJournalTest, ADamagedJournalBringsInNothing) {
    const Text journal = killed.Path(u"take00.rec");
    LeaveTake(Pattern(3000));
    const Bytes whole = ReadFileBytes(journal);
    ASSERT_EQ(whole.size(), 8192U + 4 * 65536);
    const auto changed = [&](std::size_t offset, std::uint32_t value) {
        Bytes file = whole;
        StoreLe(&file[offset], value);
        return DecodeTakeJournal(file);
    };
    const auto intact = DecodeTakeJournal(whole);
    ASSERT_TRUE(intact);
    EXPECT_EQ(intact->sound.size(), 44 + 3000U);
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

    for (const Bytes& foreign :
         {Bytes(10, 'x'), Bytes(3U << 20, 'x'), Bytes(8192 + 32768, 0), Bytes()}) {
        WriteFileBytes(journal, foreign);
        DropTakeJournal(services, path);
        EXPECT_EQ(ReadFileBytes(journal), foreign);
    }
}

TEST_F(TakeJournalTest, ATakeThatIsBeingRecordedIsLeftAlone) {
    audio.appendPerBlock = true;  // the take itself is closed between its blocks
    const Bytes pcm = Pattern(5000);
    JStreamAudioWrite& writer = Begin(WriterKind::kWavFile);
    WriteAll(writer, pcm);
    const Text file = files.folder.Path(u"take00.wav");
    EXPECT_TRUE(IsBeingRecorded(storage, file));
    EXPECT_FALSE(RepairTake(services, file));
    DropTakeJournal(services, file);
    EXPECT_TRUE(Exists(u"take00.rec"));
    EXPECT_EQ(ReadFileBytes(file).size(), 44U);
    // Nor is it recorded a second time.
    WriterBench other;
    other.context.recordingFolder = files.folder.Path();
    for (const WriterKind kind : {WriterKind::kWavFile, WriterKind::kMp2File}) {
        other.Select(kind).Open(u"take00");
        EXPECT_FALSE(other.slot.Current()->IsOpen());
        ASSERT_FALSE(other.files.boxes.shown.empty());
        EXPECT_TRUE(other.files.boxes.shown.back().text.starts_with(u"Cannot open file : "));
    }
    writer.Close();
    EXPECT_FALSE(IsBeingRecorded(storage, file));
    EXPECT_EQ(File(u"take00.wav"), WavBytes({}, pcm));
}

}  // namespace
}  // namespace orma::test
