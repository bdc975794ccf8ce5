#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "support/byte_builder.h"

namespace orma::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Mp2ReaderTest : public ::testing::Test {
  protected:
    Bytes Encode(const Samples& pcm) { return EncodeMp2(bench_.audio, bench_.files.report, pcm); }

    void SetBitrate(std::uint32_t index) {
        bench_.audio.bitrate.SetMp2Bitrate(index, bench_.files.report);
    }

    std::uint32_t Measure(const Bytes& file) { return bench_.Measure(true, file, refusal_); }

    ReaderBench bench_;
    Text refusal_;
};

TEST_F(Mp2ReaderTest, RefusalsGiveTheirReasonInOrder) {
    SetBitrate(5);  // 96 kbit/s, mono: FF FD 6? C?
    const Bytes whole = Encode(Samples(48000));
    ASSERT_EQ(Measure(whole), whole.size() / (96000 / 160) - 1);
    const struct {
        std::uint8_t second, third, fourth;
        TextView reason;
    } cases[] = {
        {0xFB, 0x74, 0x00, u"No mp2 file"},               // layer III, and all else wrong
        {0xF5, 0x64, 0xC0, u"No mp2 file"},               // MPEG-2
        {0xFD, 0x70, 0x00, u"Wrong bitrate."},            // 112 kbit/s at 44100 Hz in stereo
        {0xFD, 0x60, 0x00, u"Wrong sample-rate."},        // 44100 Hz
        {0xFD, 0x68, 0xC0, u"Wrong sample-rate."},        // 32000 Hz
        {0xFD, 0x64, 0x00, u"Wrong number of channels"},  // stereo
        {0xFD, 0x64, 0x40, u"Wrong number of channels"},  // joint stereo
        {0x1C, 0x67, 0xFF, u""},                          // sync, CRC, padding, private: free
    };
    for (const auto& refused : cases) {
        Bytes file = whole;
        std::copy_n(&refused.second, 3, &file[1]);
        EXPECT_EQ(Measure(file) == 0, !refused.reason.empty());
        EXPECT_EQ(refusal_, refused.reason);
    }
    bench_.audio.stereo = true;
    EXPECT_EQ(Measure(whole), 0U);
    EXPECT_EQ(refusal_, u"Wrong number of channels");
    EXPECT_EQ(Measure({}), 0U);
    EXPECT_EQ(refusal_, u"Empty file");
    EXPECT_EQ(Measure({'R', 'I'}), 0U);
    EXPECT_EQ(refusal_, u"No mp2 file");
}

TEST_F(Mp2ReaderTest, TheLengthIsOnePeriodShortAndNeverNegative) {
    const Bytes frame = Encode(Samples(1152));  // 192 bytes at 64 kbit/s; a period has 400
    Bytes file;
    const std::uint32_t expected[] = {0, 0, 0, 0, 1, 1, 2, 2};
    for (const std::uint32_t periods : expected) {
        file.insert(file.end(), frame.begin(), frame.end());
        EXPECT_EQ(Measure(file), periods) << file.size();
        EXPECT_EQ(refusal_, u"");
    }
}

TEST_F(Mp2ReaderTest, AWrappedFileIsItsDataChunk) {
    const Samples sound = Tone(300, 48000, 9000, 48000);
    const Bytes frames = Encode(sound);
    const auto wrap = [&](std::uint32_t dataSize) {
        ByteBuilder file;
        file.Put("RIFF").U32(0).Put("WAVE").Put("bext").U32(7).Fill(8).Put("data").U32(dataSize);
        return file.Put(frames).Put("levl").U32(4).Fill(4, 0xFF).bytes;
    };
    const Bytes wrapped = wrap(static_cast<std::uint32_t>(frames.size()));
    const std::uint32_t periods = static_cast<std::uint32_t>(frames.size()) / 400 - 1;
    EXPECT_EQ(Measure(wrapped), periods);
    const auto bare = bench_.Reader(true, frames);
    bare->OpenAt(0, {48000, 1});
    const Samples expected = bench_.Get(*bare, {48000, 1}, periods + 2);
    bare->CloseReader();
    const auto reader = bench_.Reader(true, wrapped);
    reader->OpenAt(0, {48000, 1});
    EXPECT_EQ(reader->FileFormat().dataOffset, 12U + 16 + 8);
    EXPECT_EQ(bench_.Get(*reader, {48000, 1}, periods + 2), expected);
    // A length beyond the file counts up to its end; none at all is no sound.
    EXPECT_EQ(Measure(wrap(0xFFFFFFFF)), (frames.size() + 12) / 400 - 1);
    EXPECT_EQ(Measure(wrap(0)), 0U);
    EXPECT_EQ(Measure(ByteBuilder().Put("RIFF").U32(4).Put("WAVE").bytes), 0U);
}

TEST_F(Mp2ReaderTest, TheBitRateIsAdoptedFromTheFirstHeader) {
    const auto adopt = [this](std::string_view file) {
        WriteFileBytes(bench_.path, AsBytes(file));
        return AdoptMp2Bitrate(bench_.files.services, bench_.path, bench_.audio,
                               bench_.files.report);
    };
    EXPECT_TRUE(adopt("\xFF\xFD\xC4\xC0"));
    EXPECT_EQ(bench_.audio.bitrate.BitsPerSecond(), 256000U);
    EXPECT_TRUE(adopt("RIFF"));
    EXPECT_EQ(bench_.audio.bitrate.BitsPerSecond(), 64000U);
    EXPECT_FALSE(adopt("\xFF\xFD\xC4"));
    EXPECT_THAT(bench_.files.boxes.Texts(), IsEmpty());
    for (const char* illegal : {"\xFF\xFD\x04\xC0", "\xFF\xFD\xE4\xC0"}) {
        EXPECT_TRUE(adopt(illegal));
        EXPECT_EQ(bench_.audio.bitrate.BitsPerSecond(), 64000U);
    }
    EXPECT_THAT(bench_.files.boxes.Texts(), ElementsAre(u"Illegal bitrate", u"Illegal bitrate"));
}

TEST_F(Mp2ReaderTest, SeeksLandOnTheFrameThatHoldsThePeriodAndSilenceIsBehindTheEnd) {
    const Bytes frames = Encode(ExtremeNoise(1, 3 * 48000));
    const auto reader = bench_.Reader(true, frames);
    const PlaybackFormat output{48000, 1};
    reader->OpenAt(0, output);
    EXPECT_EQ(reader->FileFormat().rateCode, 0U);
    EXPECT_EQ(bench_.audio.bitsPerSample, 16);
    const Samples whole = bench_.Get(*reader, output, 60);
    // Period 30 lies in frame 62 (30 * 125 / 60 = 62.5), 71424 samples in.
    reader->SeekPeriod(30);
    const Samples part = bench_.Get(*reader, output, 20);
    // The decoder's filters begin empty: a frame later both are the same.
    EXPECT_TRUE(std::equal(part.begin() + 1152, part.end(), whole.begin() + 71424 + 1152));
    // The file stands at the frame's first byte, for copying.
    EXPECT_EQ(reader->PositionAt(31), 64U);
    EXPECT_EQ(reader->GetPosition(), 64U * 192);
    EXPECT_EQ(reader->PositionAt(0xFFFFFFFF), frames.size() / 192);
    reader->SeekPeriod(1000);
    EXPECT_THAT(bench_.Get(*reader, output, 3), Each(0));

    // A second reader takes the shared decoder; the first one goes on all the same.
    reader->SeekPeriod(30);
    {
        const auto second = MakeReader(bench_.services, bench_.path, true);
        second->OpenAt(5, output);
        bench_.Get(*second, output, 1);
    }
    EXPECT_FALSE(bench_.decoder.IsActive());
    EXPECT_EQ(bench_.Get(*reader, output, 20), part);
}

TEST_F(Mp2ReaderTest, DamageIsSilenceOfItsOwnLengthAndMovesNothing) {
    const Samples sound = Tone(300, 48000, 9000, 48000);
    SetBitrate(7);
    Bytes frames = Encode(sound);
    const PlaybackFormat output{48000, 1};
    const auto read = [&](const Bytes& file) {
        const auto reader = bench_.Reader(true, file);
        reader->OpenAt(0, output);
        return bench_.Get(*reader, output, 20);
    };
    const Samples whole = read(frames);
    // Frame 10 lost its header, frame 20 claims another length, frame 30 is gone altogether.
    frames[10 * 384] = 0;
    frames[20 * 384 + 2] = 0x94;
    std::fill_n(frames.begin() + 30 * 384, 384, std::uint8_t{0xFF});
    const Samples damaged = read(frames);
    for (const std::size_t frame : {10UL, 20UL, 30UL}) {
        const auto at = static_cast<long>(frame * 1152);
        EXPECT_THAT(Samples(damaged.begin() + at, damaged.begin() + at + 1152), Each(0)) << frame;
        EXPECT_TRUE(std::equal(whole.begin() + at + 2 * 1152, whole.begin() + at + 9 * 1152,
                               damaged.begin() + at + 2 * 1152))
            << frame;
    }
}

}  // namespace
}  // namespace orma::test
