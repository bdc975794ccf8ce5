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
    /// The journal of a take of 100 bytes, of which `sound` is staged.
    [[nodiscard]] Bytes JournalWith(ByteSpan sound) {
        TakeJournal journal;
        journal.Start(bench_.services, bench_.files.folder.Path(u"take00.wav"),
                      {.blockBytes = 4096, .unitBytes = 4, .resolutionShift = 1}, 100);
        journal.Append(sound);
        journal.AddMark(7);
        journal.AddMark(9);
        return bench_.File(u"take00.rec");
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
    const Samples voice = SpeechLike(44100, 20 * 44100);
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

TEST_F(TakeJournalTest, WhatAPowerCutTookFromTheTakeLeavesTheRestInWholeSamples) {
    const Bytes sound = Pattern(1000);
    WriteFileBytes(killed_.Path(u"take00.rec"), JournalWith(sound));
    for (const std::size_t size : {50U, 97U, 100U, 300U, 1100U, 2000U}) {
        WriteFileBytes(killed_.Path(u"take00.wav"), Bytes(size, 'x'));
        const Bytes file = Recovered(u"take00.wav");
        const std::size_t place = size < 100 ? (size + 3) / 4 * 4 : 100;
        const std::size_t end = size >= 1100 ? size : place + 1000;
        ASSERT_EQ(file.size(), end) << size;
        if (size >= 1100) continue;
        EXPECT_EQ(Bytes(file.begin() + static_cast<long>(place), file.end()), sound);
    }
}

TEST_F(TakeJournalTest, ADamagedJournalBringsInNothing) {
    const Bytes whole = JournalWith(Pattern(1000));
    ASSERT_EQ(whole.size(), 4096U + 16384);
    const auto changed = [&](std::size_t offset, std::uint32_t value) {
        Bytes file = whole;
        StoreLe(&file[offset], value);
        return DecodeTakeJournal(file);
    };
    const auto intact = DecodeTakeJournal(whole);
    ASSERT_TRUE(intact);
    EXPECT_EQ(intact->sound, Pattern(1000));
    EXPECT_EQ(intact->position, 100U);
    EXPECT_THAT(intact->marks, ElementsAre(7, 9));
    // Magic, version, ring and unit make it another file; places and sound that disagree cost the
    // sound alone.
    for (const std::size_t offset : {0U, 4U, 8U, 12U, 36U})
        EXPECT_FALSE(changed(offset, 0xFFFFFFFF)) << offset;
    for (const std::size_t offset : {16U, 20U, 24U, 28U, 4096U + 100, 4096U + 1096}) {
        const auto content = changed(offset, 0xFFFFFFF0);
        ASSERT_TRUE(content) << offset;
        EXPECT_THAT(content->sound, IsEmpty()) << offset;
        EXPECT_THAT(content->marks, ElementsAre(7, 9));
    }
    EXPECT_FALSE(DecodeTakeJournal(ByteSpan(whole).first(whole.size() - 1)));
    EXPECT_EQ(changed(32, 0xFFFFFFFF)->marks.size(), LevelSheet::kMaxMarks);
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
