#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "support/byte_builder.h"

namespace orma::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

struct Mp2ReaderTest : testing::Test, ReaderBench {
    Mp2ReaderTest() { audio.mp2 = true; }

    Bytes Encode(const Samples& pcm) { return EncodeMp2(audio, files.report, pcm); }

    const PlaybackFormat output{48000, 1};
};

TEST_F(Mp2ReaderTest, RefusalsGiveTheirReasonInOrder) {
    audio.bitrate.SetMp2Bitrate(5, files.report);  // 96 kbit/s, mono: FF FD 6? C?
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
        EXPECT_EQ(refusal, refused.reason);
    }
    audio.stereo = true;
    const std::pair<Bytes, TextView> others[] = {
        {whole, u"Wrong number of channels"}, {{}, u"Empty file"}, {{'R', 'I'}, u"No mp2 file"}};
    for (const auto& [file, reason] : others) {
        EXPECT_EQ(Measure(file), 0U);
        EXPECT_EQ(refusal, reason);
    }
}

TEST_F(Mp2ReaderTest, TheLengthIsOnePeriodShortAndNeverNegative) {
    const Bytes frame = Encode(Samples(1152));  // 192 bytes at 64 kbit/s; a period has 400
    Bytes file;
    for (const std::uint32_t periods : {0U, 0U, 0U, 0U, 1U, 1U, 2U, 2U}) {
        file.insert(file.end(), frame.begin(), frame.end());
        EXPECT_EQ(Measure(file), periods) << file.size();
        EXPECT_EQ(refusal, u"");
    }
}

TEST_F(Mp2ReaderTest, AWrappedFileIsItsDataChunk) {
    const Bytes frames = Encode(Tone(300, 48000, 9000, 48000));
    const auto wrap = [&](std::size_t dataSize) {
        ByteBuilder file;
        file.Put("RIFF").U32(0).Put("WAVE").Put("bext").U32(7).Fill(8).Put("data");
        file.U32(static_cast<std::uint32_t>(dataSize));
        return file.Put(frames).Put("levl").U32(4).Fill(4, 0xFF).bytes;
    };
    const auto heard = [&](const Bytes& file) {
        const auto reader = Reader(file);
        reader->OpenAt(0, output);
        return Get(*reader, output, frames.size() / 400 + 1);
    };
    EXPECT_EQ(Measure(wrap(frames.size())), frames.size() / 400 - 1);
    EXPECT_EQ(heard(wrap(frames.size())), heard(frames));
    // A length beyond the file counts up to its end; none at all is no sound.
    EXPECT_EQ(Measure(wrap(0xFFFFFFFF)), (frames.size() + 12) / 400 - 1);
    EXPECT_EQ(Measure(wrap(0)), 0U);
    EXPECT_EQ(Measure(ByteBuilder().Put("RIFF").U32(4).Put("WAVE").bytes), 0U);
}

TEST_F(Mp2ReaderTest, TheBitRateIsAdoptedFromTheFirstHeader) {
    const std::pair<std::string_view, std::uint32_t> cases[] = {
        {"\xFF\xFD\xC4\xC0", 256000},
        {"RIFF", 64000},
        {"\xFF\xFD\x04\xC0", 64000},  // free format
        {"\xFF\xFD\xE4\xC0", 64000},  // forbidden
    };
    const auto adopt = [this](std::string_view file) {
        WriteFileBytes(path, AsBytes(file));
        return AdoptMp2Bitrate(files.services, path, audio, files.report);
    };
    for (const auto& [file, bitsPerSecond] : cases) {
        EXPECT_TRUE(adopt(file));
        EXPECT_EQ(audio.bitrate.BitsPerSecond(), bitsPerSecond);
    }
    EXPECT_THAT(files.boxes.Texts(), ElementsAre(u"Illegal bitrate", u"Illegal bitrate"));
    EXPECT_FALSE(adopt("\xFF\xFD\xC4"));
}

TEST_F(Mp2ReaderTest, SeeksLandOnTheFrameThatHoldsThePeriodAndSilenceIsBehindTheEnd) {
    const Bytes frames = Encode(ExtremeNoise(1, 3 * 48000));
    const auto reader = Reader(frames);
    reader->OpenAt(0, output);
    EXPECT_EQ(reader->FileFormat().rateCode, 0U);
    EXPECT_EQ(audio.bitsPerSample, 16);
    const Samples whole = Get(*reader, output, 60);
    // Period 30 lies in frame 62 (30 * 125 / 60 = 62.5), 71424 samples in.
    reader->SeekPeriod(30);
    const Samples part = Get(*reader, output, 20);
    // The decoder's filters begin empty: a frame later both are the same.
    EXPECT_TRUE(std::equal(part.begin() + 1152, part.end(), whole.begin() + 71424 + 1152));
    // The file stands at the frame's first byte, for copying.
    EXPECT_EQ(reader->PositionAt(31), 64U);
    EXPECT_EQ(reader->GetPosition(), 64U * 192);
    EXPECT_EQ(reader->PositionAt(0xFFFFFFFF), frames.size() / 192);
    reader->SeekPeriod(1000);
    EXPECT_THAT(Get(*reader, output, 3), Each(0));

    // A second reader takes the shared decoder; the first one goes on all the same.
    reader->SeekPeriod(30);
    {
        const auto second = MakeReader(services, path, true);
        second->OpenAt(5, output);
        Get(*second, output, 1);
    }
    EXPECT_FALSE(decoder.IsActive());
    EXPECT_EQ(Get(*reader, output, 20), part);
}

TEST_F(Mp2ReaderTest, DamageIsSilenceOfItsOwnLengthAndMovesNothing) {
    Bytes frames = Encode(Tone(300, 48000, 9000, 48000));
    const auto read = [&] {
        const auto reader = Reader(frames);
        reader->OpenAt(0, output);
        return Get(*reader, output, 20);
    };
    const Samples whole = read();
    // Frame 10 lost its header, frame 20 claims another length, frame 30 is gone altogether.
    frames[10 * 192] = 0;
    frames[20 * 192 + 2] = 0x94;
    std::fill_n(&frames[30 * 192], 192, std::uint8_t{0xFF});
    const Samples damaged = read();
    for (const long frame : {10, 20, 30}) {
        const auto at = damaged.begin() + frame * 1152;
        EXPECT_THAT(Samples(at, at + 1152), Each(0)) << frame;
        const auto expected = whole.begin() + frame * 1152;
        EXPECT_TRUE(std::equal(expected + 2 * 1152, expected + 9 * 1152, at + 2 * 1152)) << frame;
    }
}

}  // namespace
}  // namespace orma::test
