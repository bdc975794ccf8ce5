#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "audio/files/wav_bytes.h"

namespace orma::test {
namespace {

using ::testing::Each;

struct WavReaderTest : testing::Test, ReaderBench {};

TEST_F(WavReaderTest, RefusalsGiveTheirReason) {
    const Bytes second(88200);
    const auto extended = [&](unsigned tag, unsigned subFormat) {
        ByteBuilder wav;
        wav.Put("RIFF").U32(88200 + 60).Put("WAVE").Put("fmt ").U32(40).U16(tag).U16(1).U32(44100);
        wav.U32(176400).U16(4).U16(32).U16(22).U16(32).U32(0).U16(subFormat).Fill(14);
        return wav.Put("data").U32(88200).Put(second).bytes;
    };
    constexpr TextView kChannels = u"Only mono or stereo allowed.";
    constexpr TextView kBits = u"Only 16 or 24-bits\nsamples allowed.";
    constexpr TextView kNoData = u"WavOpenFile No Data";
    const std::pair<Bytes, TextView> cases[] = {
        {{}, u"Empty file"},
        {WavBytes({.channels = 0}, second), kChannels},
        {WavBytes({.channels = 3, .sampleRate = 22050}, second), kChannels},
        {WavBytes({.sampleRate = 22050, .bits = 8}, second), u"Wrong sample-rate"},
        {WavBytes({.bits = 8, .dataSize = 0}, second), kBits},
        {extended(3, 0), kBits},  // floating point
        {extended(0xFFFE, 3), kBits},
        {WavBytes({.dataSize = 0}, second), kNoData},
        {WavBytes({.dataSize = 88201}, second), kNoData},
        {WavBytes({.dataSize = 0xFFFFFFFF}, second), kNoData},
        {extended(0xFFFE, 1), u""},
        {WavBytes({}, second), u""},
    };
    for (const auto& [file, reason] : cases) {
        EXPECT_EQ(Measure(file) == 0, !reason.empty());
        EXPECT_EQ(refusal, reason);
    }
}

TEST_F(WavReaderTest, LengthAndFormatFollowFromTheFile) {
    audio.resolutionShift = 1;
    const std::pair<WavFields, std::uint32_t> cases[] = {
        {{.channels = 2, .sampleRate = 44100, .bits = 24}, 26460},
        {{.channels = 1, .sampleRate = 88200, .bits = 16}, 17640},
        {{.channels = 2, .sampleRate = 96000, .bits = 32}, 76800},
        {{.channels = 1, .sampleRate = 44100, .bits = 20}, 13230},  // in three bytes
    };
    for (const auto& [fields, bytesPerPeriod] : cases) {
        const Bytes data(3 * bytesPerPeriod + 1000);
        const auto reader = Reader(WavBytes(fields, data));
        EXPECT_EQ(reader->Measure(), 3U);
        EXPECT_EQ(reader->FileFormat().bytesPerPeriod, bytesPerPeriod);
        EXPECT_EQ(reader->FileFormat().dataOffset, 44U);
        EXPECT_EQ(reader->FileFormat().dataLength, data.size());
        EXPECT_EQ(audio.sampleRate, fields.sampleRate);
        EXPECT_EQ(audio.bitsPerSample, fields.bits);
    }
}

TEST_F(WavReaderTest, OtherChunksPadBytesAndLongFormatsAreSkipped) {
    Samples expected = ExtremeNoise(1, 2205);
    ByteBuilder wav;
    wav.Put("RIFF").U32(0).Put("WAVE").Put("LIST").U32(5).Put("data!").Fill(1);
    wav.Put("fmt ").U32(19).U16(1).U16(1).U32(44100).U32(88200).U16(2).U16(16).Fill(4);
    wav.Put("bext").U32(0x12).Fill(18, 'f').Put("data").U32(4410);
    wav.Put(AsPcm(expected)).Put("cue ").U32(0);
    const auto reader = Reader(wav.bytes);
    EXPECT_EQ(reader->Measure(), 1U);
    // What follows the data is not heard.
    reader->OpenAt(0, {});
    expected.resize(2 * 2205);
    EXPECT_EQ(Get(*reader, {}, 2), expected);
}

TEST_F(WavReaderTest, HostileHeadersEndWithARefusal) {
    ByteBuilder endless;
    endless.Put("RIFF").U32(0).Put("WAVE");
    for (int i = 0; i < 100000; ++i)
        endless.Put("zero").U32(0);
    ByteBuilder shortFormat;
    shortFormat.Put("RIFF").U32(0).Put("WAVE").Put("fmt ").U32(12).U16(1).U16(1).U32(44100);
    shortFormat.U32(88200).Put("data").U32(4).Fill(4);
    for (const Bytes& file : {
             endless.bytes,
             shortFormat.bytes,
             ByteBuilder().Put("RIFF").U32(8).Put("WAVE").Put("JUNK").U32(~0U).Fill(64).bytes,
             ByteBuilder().Put("RIFF").U32(8).Put("WAVE").Put("JUNK").U32(~7U).Fill(64).bytes,
             ByteBuilder().Put("no wave file at all, but some text").bytes,
             Bytes(4096),
         }) {
        EXPECT_EQ(Measure(file), 0U);
        EXPECT_EQ(refusal, u"Only mono or stereo allowed.");
    }
    const Bytes whole = WavBytes({}, Bytes(10));  // shorter than a period
    for (std::size_t size = 1; size <= whole.size(); ++size) {
        EXPECT_EQ(Measure(Bytes(whole.begin(), whole.begin() + static_cast<long>(size))), 0U);
        EXPECT_EQ(refusal.empty(), size == whole.size());
    }
}

TEST_F(WavReaderTest, SeeksLandOnThePeriodAndSilenceIsBehindTheEnd) {
    const Samples sound = ExtremeNoise(1, 24000);
    const auto reader = Reader(WavBytes({.sampleRate = 48000}, AsPcm(sound)));
    const PlaybackFormat output{48000, 1};
    const auto from = [&](long period) {
        return Samples(sound.begin() + 2400 * period, sound.end());
    };
    reader->OpenAt(3, output);
    EXPECT_EQ(Get(*reader, output, 7), from(3));
    EXPECT_THAT(Get(*reader, output, 1), Each(0));
    EXPECT_EQ(reader->PositionAt(7), 7U);
    EXPECT_EQ(Get(*reader, output, 3), from(7));
    reader->SeekPeriod(0xFFFFFFFF);
    EXPECT_THAT(Get(*reader, output, 1), Each(0));
    reader->CloseReader();
    EXPECT_FALSE(reader->IsOpen());
    reader->OpenAt(8, output);  // opens its file again
    EXPECT_EQ(Get(*reader, output, 2), from(8));
    EXPECT_TRUE(files.boxes.shown.empty());
}

}  // namespace
}  // namespace orma::test
