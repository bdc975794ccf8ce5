#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

#include "audio/files/writer_bench.h"
#include "support/byte_builder.h"
#include "support/riff_chunks.h"
#include "support/signals.h"

namespace orma::test {
namespace {

constexpr const char* kPcmIds = "bext fmt  fact data levl qlty";
constexpr const char* kMpegIds = "bext fmt  fact mext data levl qlty";

std::uint32_t Number(ByteSpan bytes, std::size_t at) {
    return LoadLe<std::uint32_t>(&bytes[at]);
}

std::uint32_t Sum(ByteSpan bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0});
}

class BwfWritersTest : public ::testing::Test {
  protected:
    BwfWritersTest() {
        LevlChunk levl;
        levl.peaks = {1, 2, 3};
        PublicationTemplates& publication = bench_->context.publication;
        publication.levl = levl.Encode();
        publication.qlty.report = "SM=00:00:00:0\r\n";
        publication.qlty.fileSecurityReport = 99;
        publication.hasQlty = true;
        publication.codingHistory = "A=PCM,F=44100,W=16,M=mono\r\n";  // 27 characters
        publication.head.bextSize = 604 + 26;
    }

    JStreamAudioWrite& Open(WriterKind kind) {
        JStreamAudioWrite& writer = bench_->Select(kind);
        bench_->context.byteSum = 0;
        writer.Open(u"Street");
        return writer;
    }

    void Publish(WriterKind kind, ByteSpan pcm, std::size_t buffer = 4410) {
        JStreamAudioWrite& writer = Open(kind);
        WriteAll(writer, pcm, buffer);
        End(writer);
    }

    static void End(JStreamAudioWrite& writer) {
        writer.Finish();
        writer.Close();
    }

    /// Reads what was published; the names of its chunks.
    std::string Ids() {
        file_ = bench_->File(u"pub_Street." + bench_->context.publishExtension);
        chunks_ = RiffChunks(file_);
        return RiffIds(chunks_);
    }

    /// The content of chunk `index`.
    Bytes Content(std::size_t index) {
        const ByteSpan content = chunks_.at(index).content;
        return {content.begin(), content.end()};
    }

    Bytes file_;
    std::vector<RiffChunk> chunks_;
    std::unique_ptr<WriterBench> bench_ = std::make_unique<WriterBench>();
};

TEST_F(BwfWritersTest, APcmPublicationOf48000HzHoldsTheSamplesUnchanged) {
    bench_->audio.sampleRate = 48000;
    for (const bool stereo : {false, true}) {
        bench_->audio.stereo = stereo;
        const unsigned channels = stereo ? 2 : 1;
        Bytes pcm = Pattern(30 * 2304 * channels + 8);
        Publish(WriterKind::kBwfWavFile, pcm, 9600);
        ASSERT_EQ(Ids(), kPcmIds);
        // 8 bytes more begin a frame, which is filled with silence.
        pcm.resize(31 * 2304 * channels);
        EXPECT_EQ(Content(3), pcm);
        EXPECT_EQ(Number(Content(2), 0), 31U * 1152);
        ByteBuilder format;
        format.U16(1).U16(channels).U32(48000).U32(96000 * channels).U16(2).U16(16);
        EXPECT_EQ(Content(1), format.bytes);
        EXPECT_EQ(Number(Content(5), 0), 99U);
        EXPECT_EQ(Number(Content(5), 4), Sum(pcm));
        EXPECT_EQ(chunks_[3].offset, 622U + 28 + 44);
        EXPECT_EQ(bench_->context.dataStart, chunks_[3].offset);
        EXPECT_TRUE(bench_->context.committed);
        EXPECT_EQ(bench_->context.publishedPath, bench_->files.folder.Path(u"pub_Street.wav"));
        EXPECT_FALSE(bench_->Exists(u"pub_Street.wav.tmp"));
    }
    EXPECT_TRUE(bench_->files.boxes.shown.empty());
}

TEST_F(BwfWritersTest, APcmPublicationOf44100HzIsConvertedToItsLastSample) {
    for (const std::size_t samples : {1UL, 1058UL, 1059UL, 44100UL}) {
        const Samples voice = ExtremeNoise(1, samples);
        Publish(WriterKind::kBwfWavFile, AsPcm(voice), 1000);
        ASSERT_EQ(Ids(), kPcmIds);
        // As many whole frames as it takes to consume every sample.
        const std::size_t frames = (samples * 48000 + 44100 * 1152 - 1) / (44100 * 1152UL);
        Samples padded = voice;
        padded.resize((frames + 2) * 1152);
        const Samples expected = LiteralConverter().Convert(padded, frames * 1152);
        const ByteSpan pcm = AsPcm(expected);
        EXPECT_EQ(Content(3), Bytes(pcm.begin(), pcm.end())) << samples;
        EXPECT_EQ(Number(Content(2), 0), frames * 1152);
    }
}

TEST_F(BwfWritersTest, BlocksOfAnyLengthArriveInOrderAndAreSummedByteByByte) {
    JStreamAudioWrite& writer = Open(WriterKind::kBwfMp2File);
    Bytes expected;
    for (const std::uint32_t length : {1U, 7U, 8U, 1023U, 1024U, 1025U, 65536U, 600001U}) {
        for (const Bytes& block : {Bytes(length, 255), Pattern(length)}) {
            writer.WriteEncoded(block.data(), length);
            expected.insert(expected.end(), block.begin(), block.end());
        }
        EXPECT_EQ(bench_->context.byteSum, Sum(expected)) << length;
    }
    End(writer);
    const Bytes file = bench_->File(u"pub_Street.wav");
    ASSERT_GE(file.size(), bench_->context.dataStart + expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), &file[bench_->context.dataStart]));
    EXPECT_EQ(bench_->context.dataBytes, expected.size());
}

TEST_F(BwfWritersTest, ClipsOfBothRatesFollowEachOtherInOneFile) {
    for (const WriterKind kind : {WriterKind::kBwfWavFile, WriterKind::kBwfMp2File}) {
        JStreamAudioWrite& writer = Open(kind);
        writer.WriteSamples(Tone(500, 44100, 9000, 44100).data(), 88200);
        bench_->audio.sampleRate = 48000;
        writer.WriteSamples(Tone(500, 48000, 9000, 48000).data(), 96000);
        bench_->audio.sampleRate = 44100;
        End(writer);
        const bool mpeg = kind == WriterKind::kBwfMp2File;
        ASSERT_EQ(Ids(), mpeg ? kMpegIds : kPcmIds);
        // Two seconds and the padding of the last frame.
        EXPECT_EQ(Number(Content(2), 0), 84U * 1152);
        EXPECT_EQ(Content(mpeg ? 4 : 3).size(), 84U * (mpeg ? 192 : 2304));
        EXPECT_EQ(Number(chunks_.back().content, 4), Sum(Content(mpeg ? 4 : 3)));
        EXPECT_FALSE(bench_->encoder.IsActive());
    }
}

TEST_F(BwfWritersTest, AnMpegPublicationOfNothingIsItsChunksAlone) {
    PublicationTemplates& publication = bench_->context.publication;
    publication.head.riffSize = 704 + 26 + 132 + 32;
    Publish(WriterKind::kBwfMp2File, {});
    ByteBuilder expected;
    const auto head = publication.head.Encode();
    expected.Put(ByteSpan(head)).Field("A=PCM,F=44100,W=16,M=mono\r\n", 28);
    const auto format = MpegFormatBlock().Encode();
    expected.Put(ByteSpan(format));
    expected.Put("levl").U32(124).U32(0).U32(1).U32(1).U32(9600).U32(1).U32(3).U32(0xFFFFFFFF);
    expected.U32(128).Fill(28).Fill(60).Put(Bytes{1, 2, 3}).Fill(1);
    // 15 characters: (15 + 16) without the two low bits is 28, and 4 more.
    expected.Put("qlty").U32(24).U32(99).U32(0).Field("SM=00:00:00:0\r\n", 16);
    EXPECT_EQ(Ids(), kMpegIds);
    EXPECT_EQ(file_, expected.bytes);
}

TEST_F(BwfWritersTest, StoredFramesPassAsTheyAreUnderTheNameOfMp2) {
    bench_->audio.mp2 = true;
    bench_->context.publishExtension = u"mpg";
    PublicationTemplates& publication = bench_->context.publication;
    publication.mpeg.factSamples = 3 * 1152;
    publication.mpeg.dataSize = 3 * 192;
    publication.head.riffSize = 704 + 26 + 3 * 192 + 132 + 32;
    const Bytes frames = Pattern(3 * 192);
    JStreamAudioWrite& writer = Open(WriterKind::kBwfMp2File);
    writer.WriteEncoded(frames.data(), 192);
    writer.WriteEncoded(&frames[192], 384);
    End(writer);
    ASSERT_EQ(Ids(), kMpegIds);
    EXPECT_EQ(Content(4), frames);
    EXPECT_EQ(chunks_[4].offset, 26U + 712);
    EXPECT_EQ(bench_->context.dataStart, 26U + 712);
    EXPECT_EQ(Number(Content(2), 0), 3U * 1152);
    EXPECT_EQ(Number(Content(6), 4), Sum(frames));

    // A job that expected another number of frames leaves no wrong size behind.
    Open(WriterKind::kBwfMp2File).WriteEncoded(frames.data(), 384);
    End(writer);
    ASSERT_EQ(Ids(), kMpegIds);
    EXPECT_EQ(Content(4).size(), 384U);
    EXPECT_EQ(Number(Content(2), 0), 2U * 1152);
}

TEST_F(BwfWritersTest, WhatIsNotCompleteLeavesTheOldPublication) {
    const Bytes old = {'o', 'l', 'd'};
    const Bytes pcm = Pattern(10000);
    for (const WriterKind kind : {WriterKind::kBwfWavFile, WriterKind::kBwfMp2File}) {
        WriteFileBytes(bench_->files.folder.Path(u"pub_Street.wav"), old);
        const auto untouched = [&] {
            return !bench_->context.committed && bench_->context.publishedPath.empty() &&
                   !bench_->Exists(u"pub_Street.wav.tmp") && bench_->File(u"pub_Street.wav") == old;
        };
        // Closed before it was finished.
        JStreamAudioWrite& writer = Open(kind);
        writer.WriteSamples(pcm.data(), 10000);
        EXPECT_TRUE(bench_->Exists(u"pub_Street.wav.tmp"));
        writer.Close();
        EXPECT_TRUE(untouched());
        EXPECT_FALSE(bench_->encoder.IsActive());
        // Cancelled.
        bench_->context.cancelled = true;
        Publish(kind, pcm);
        EXPECT_TRUE(untouched());
        bench_->context.cancelled = false;
        // Replaced by another writer while it was open.
        Open(kind).WriteSamples(pcm.data(), 10000);
        bench_->slot.SelectWriter(WriterKind::kNone);
        EXPECT_TRUE(untouched());
        // Opened twice.
        Open(kind).Open(u"Other");
        EXPECT_TRUE(untouched());
        EXPECT_FALSE(bench_->Exists(u"pub_Other.wav.tmp"));
        bench_->files.boxes.shown.clear();
    }
}

TEST_F(BwfWritersTest, RatesThatCannotBeConvertedMakeTheWriterUnhealthy) {
    for (const WriterKind kind : {WriterKind::kBwfWavFile, WriterKind::kBwfMp2File}) {
        bench_->audio.sampleRate = 96000;
        EXPECT_FALSE(Open(kind).IsOpen());
        bench_->audio.sampleRate = 44100;
        JStreamAudioWrite& writer = Open(kind);
        EXPECT_TRUE(writer.IsOpen());
        bench_->audio.sampleRate = 96000;
        writer.WriteSamples("0123", 4);
        EXPECT_FALSE(writer.IsOpen());
        End(writer);
        EXPECT_FALSE(bench_->Exists(u"pub_Street.wav"));
        EXPECT_FALSE(bench_->Exists(u"pub_Street.wav.tmp"));
    }
}

}  // namespace
}  // namespace orma::test
