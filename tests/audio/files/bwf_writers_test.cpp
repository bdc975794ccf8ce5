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

std::uint32_t Sum(ByteSpan bytes) {
    return std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0});
}

struct BwfWritersTest : testing::Test, WriterBench {
    BwfWritersTest() {
        LevlChunk levl;
        levl.peaks = {1, 2, 3};
        PublicationTemplates& publication = context.publication;
        publication.levl = levl.Encode();
        publication.qlty.report = "SM=00:00:00:0\r\n";
        publication.qlty.fileSecurityReport = 99;
        publication.hasQlty = true;
        publication.codingHistory = "A=PCM,F=44100,W=16,M=mono\r\n";  // 27 characters
        publication.head.bextSize = 604 + 26;
    }

    JStreamAudioWrite& Open(WriterKind kind) {
        JStreamAudioWrite& writer = Select(kind);
        context.byteSum = 0;
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
        file = ReadFileBytes(context.publishedPath);
        chunks = RiffChunks(file);
        return RiffIds(chunks);
    }

    Bytes Content(std::size_t chunk) {
        const ByteSpan content = chunks.at(chunk).content;
        return {content.begin(), content.end()};
    }
    std::uint32_t Number(std::size_t chunk, std::size_t at = 0) {
        return LoadLe<std::uint32_t>(&chunks.at(chunk).content[at]);
    }

    Bytes file;
    std::vector<RiffChunk> chunks;
};

TEST_F(BwfWritersTest, APcmPublicationOf48000HzHoldsTheSamplesUnchanged) {
    audio.sampleRate = 48000;
    for (const bool stereo : {false, true}) {
        audio.stereo = stereo;
        const unsigned channels = stereo ? 2 : 1;
        Bytes pcm = Pattern(30 * 2304 * channels + 8);
        Publish(WriterKind::kBwfWavFile, pcm, 9600);
        ASSERT_EQ(Ids(), kPcmIds);
        // 8 bytes more begin a frame, which is filled with silence.
        pcm.resize(31 * 2304 * channels);
        EXPECT_EQ(Content(3), pcm);
        EXPECT_EQ(Number(2), 31U * 1152);
        ByteBuilder format;
        format.U16(1).U16(channels).U32(48000).U32(96000 * channels).U16(2).U16(16);
        EXPECT_EQ(Content(1), format.bytes);
        EXPECT_EQ(Number(5), 99U);
        EXPECT_EQ(Number(5, 4), Sum(pcm));
        EXPECT_EQ(chunks[3].offset, 622U + 28 + 44);
        EXPECT_EQ(context.dataStart, chunks[3].offset);
        EXPECT_TRUE(context.committed);
        EXPECT_EQ(context.publishedPath, files.folder.Path(u"pub_Street.wav"));
        EXPECT_FALSE(Exists(u"pub_Street.wav.tmp"));
    }
    EXPECT_TRUE(files.boxes.shown.empty());
}

TEST_F(BwfWritersTest, APcmPublicationOf44100HzIsConvertedToItsLastSample) {
    for (const std::size_t samples : {1UL, 1058UL, 1059UL, 44100UL}) {
        Samples voice = ExtremeNoise(1, samples);
        Publish(WriterKind::kBwfWavFile, AsPcm(voice), 1000);
        ASSERT_EQ(Ids(), kPcmIds);
        // As many whole frames as it takes to consume every sample.
        const std::size_t frames = (samples * 48000 + 44100 * 1152 - 1) / (44100 * 1152UL);
        voice.resize((frames + 2) * 1152);
        const Samples expected = LiteralConverter().Convert(voice, frames * 1152);
        const ByteSpan pcm = AsPcm(expected);
        EXPECT_EQ(Content(3), Bytes(pcm.begin(), pcm.end())) << samples;
        EXPECT_EQ(Number(2), frames * 1152);
    }
}

TEST_F(BwfWritersTest, BlocksOfAnyLengthArriveInOrderAndAreSummedByteByByte) {
    audio.mp2 = true;
    context.publishExtension = u"mpg";
    JStreamAudioWrite& writer = Open(WriterKind::kBwfMp2File);
    Bytes expected;
    for (const std::uint32_t length : {1U, 7U, 8U, 1023U, 1024U, 1025U, 65536U, 600001U}) {
        for (const Bytes& block : {Bytes(length, 255), Pattern(length)}) {
            writer.WriteEncoded(block.data(), length);
            expected.insert(expected.end(), block.begin(), block.end());
        }
        EXPECT_EQ(context.byteSum, Sum(expected)) << length;
    }
    writer.WriteEncoded(expected.data(), 2);  // 192 bytes a frame
    expected.insert(expected.end(), expected.begin(), expected.begin() + 2);
    End(writer);
    EXPECT_EQ(context.publishedPath, files.folder.Path(u"pub_Street.mpg"));
    // The head expected another number of frames, and says what there is.
    ASSERT_EQ(Ids(), kMpegIds);
    EXPECT_EQ(Content(4), expected);
    EXPECT_EQ(chunks[4].offset, context.dataStart);
    EXPECT_EQ(Number(2), expected.size() / 192 * 1152);
    EXPECT_EQ(Number(6, 4), Sum(expected));
}

TEST_F(BwfWritersTest, ClipsOfBothRatesFollowEachOtherInOneFile) {
    for (const WriterKind kind : {WriterKind::kBwfWavFile, WriterKind::kBwfMp2File}) {
        JStreamAudioWrite& writer = Open(kind);
        writer.WriteSamples(Tone(500, 44100, 9000, 44100).data(), 88200);
        audio.sampleRate = 48000;
        writer.WriteSamples(Tone(500, 48000, 9000, 48000).data(), 96000);
        audio.sampleRate = 44100;
        End(writer);
        const bool mpeg = kind == WriterKind::kBwfMp2File;
        ASSERT_EQ(Ids(), mpeg ? kMpegIds : kPcmIds);
        // Two seconds and the padding of the last frame.
        EXPECT_EQ(Number(2), 84U * 1152);
        EXPECT_EQ(Content(mpeg ? 4 : 3).size(), 84U * (mpeg ? 192 : 2304));
        EXPECT_FALSE(encoder.IsActive());
    }
}

TEST_F(BwfWritersTest, WhatIsNotCompleteLeavesTheOldPublication) {
    const Bytes old = {'o', 'l', 'd'};
    const Bytes pcm = Pattern(10000);
    for (const WriterKind kind : {WriterKind::kBwfWavFile, WriterKind::kBwfMp2File}) {
        WriteFileBytes(files.folder.Path(u"pub_Street.wav"), old);
        const auto untouched = [&] {
            return !context.committed && context.publishedPath.empty() && !encoder.IsActive() &&
                   !Exists(u"pub_Street.wav.tmp") && File(u"pub_Street.wav") == old;
        };
        JStreamAudioWrite& writer = Open(kind);
        writer.WriteSamples(pcm.data(), 10000);
        EXPECT_TRUE(Exists(u"pub_Street.wav.tmp"));
        writer.Close();
        EXPECT_TRUE(untouched()) << "closed before it was finished";
        context.cancelled = true;
        Publish(kind, pcm);
        EXPECT_TRUE(untouched()) << "cancelled";
        context.cancelled = false;
        Open(kind).WriteSamples(pcm.data(), 10000);
        slot.SelectWriter(WriterKind::kNone);
        EXPECT_TRUE(untouched()) << "replaced by another writer";
        // Of a rate that cannot be converted, from the start or within.
        audio.sampleRate = 96000;
        EXPECT_FALSE(Open(kind).IsOpen());
        audio.sampleRate = 44100;
        EXPECT_TRUE(Open(kind).IsOpen());
        audio.sampleRate = 96000;
        Select(kind).WriteSamples("0123", 4);
        End(Select(kind));
        EXPECT_TRUE(untouched());
        audio.sampleRate = 44100;
    }
}

}  // namespace
}  // namespace orma::test
