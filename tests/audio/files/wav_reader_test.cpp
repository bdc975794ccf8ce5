#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"
#include "audio/files/wav_bytes.h"
#include "base/trace.h"

namespace orma::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WavReaderTest : public ::testing::Test {
  protected:
    std::uint32_t Measure(const Bytes& file) { return bench_.Measure(false, file, refusal_); }

    ReaderBench bench_;
    Text refusal_;
};

TEST_F(WavReaderTest, RefusalsGiveTheirReason) {
    const Bytes second(88200);
    const struct {
        WavFields fields;
        TextView reason;
    } cases[] = {
        {{.channels = 0}, u"Only mono or stereo allowed."},
        {{.channels = 3, .sampleRate = 22050}, u"Only mono or stereo allowed."},
        {{.sampleRate = 22050, .bits = 8}, u"Wrong sample-rate"},
        {{.bits = 8, .dataSize = 0}, u"Only 16 or 24-bits\nsamples allowed."},
        {{.dataSize = 0}, u"WavOpenFile No Data"},
        {{.dataSize = 88201}, u"WavOpenFile No Data"},
        {{.dataSize = 0xFFFFFFFF}, u"WavOpenFile No Data"},
    };
    for (const auto& refused : cases) {
        EXPECT_EQ(Measure(WavBytes(refused.fields, second)), 0U);
        EXPECT_EQ(refusal_, refused.reason);
    }
    EXPECT_EQ(Measure({}), 0U);
    EXPECT_EQ(refusal_, u"Empty file");
    EXPECT_EQ(Measure(WavBytes({}, second)), 20U);
    EXPECT_EQ(refusal_, u"");
}

TEST_F(WavReaderTest, FloatingPointIsRefusedAlsoInAnExtensibleFormat) {
    const auto file = [](unsigned tag, unsigned subFormat) {
        ByteBuilder wav;
        wav.Put("RIFF").U32(88200 + 60).Put("WAVE").Put("fmt ").U32(40).U16(tag).U16(1).U32(44100);
        wav.U32(176400).U16(4).U16(32).U16(22).U16(32).U32(0).U16(subFormat).Fill(14);
        return wav.Put("data").U32(88200).Fill(88200).bytes;
    };
    EXPECT_EQ(Measure(file(1, 0)), 10U);
    EXPECT_EQ(Measure(file(0xFFFE, 1)), 10U);
    EXPECT_EQ(Measure(file(3, 0)), 0U);
    EXPECT_EQ(Measure(file(0xFFFE, 3)), 0U);
    EXPECT_EQ(refusal_, u"Only 16 or 24-bits\nsamples allowed.");
}

TEST_F(WavReaderTest, LengthAndFormatFollowFromTheFile) {
    bench_.audio.resolutionShift = 1;
    const struct {
        WavFields fields;
        std::uint32_t bytesPerPeriod;
        unsigned rateCode;
    } cases[] = {
        {{.channels = 1, .sampleRate = 44100, .bits = 16}, 8820, 0},
        {{.channels = 2, .sampleRate = 44100, .bits = 24}, 26460, 0},
        {{.channels = 2, .sampleRate = 48000, .bits = 16}, 19200, 1},
        {{.channels = 1, .sampleRate = 88200, .bits = 16}, 17640, 2},
        {{.channels = 2, .sampleRate = 96000, .bits = 32}, 76800, 3},
        // 20 bits lie in three bytes.
        {{.channels = 1, .sampleRate = 44100, .bits = 20}, 13230, 0},
    };
    for (const auto& known : cases) {
        const Bytes data(3 * known.bytesPerPeriod + 1000);
        const auto reader = bench_.Reader(false, WavBytes(known.fields, data));
        EXPECT_EQ(reader->Measure(), 3U);
        const AudioFileFormat& format = reader->FileFormat();
        EXPECT_EQ(format.bytesPerPeriod, known.bytesPerPeriod);
        EXPECT_EQ(format.rateCode, known.rateCode);
        EXPECT_EQ(format.dataOffset, 44U);
        EXPECT_EQ(format.dataLength, data.size());
        EXPECT_EQ(bench_.audio.sampleRate, known.fields.sampleRate);
        EXPECT_EQ(bench_.audio.bitsPerSample, known.fields.bits);
    }
    bench_.audio.externalRecorder = true;
    const auto reader = bench_.Reader(false, WavBytes({.sampleRate = 48000}, Bytes(20000)));
    EXPECT_GT(reader->Measure(), 0U);
    EXPECT_EQ(reader->FileFormat().rateCode, 0U);
}

TEST_F(WavReaderTest, OtherChunksPadBytesAndLongFormatsAreSkipped) {
    std::vector<std::string> trace;
    SetTraceSink([&](std::string_view line) { trace.emplace_back(line); });
    Samples expected = ExtremeNoise(1, 2205);
    ByteBuilder wav;
    wav.Put("RIFF").U32(0).Put("WAVE").Put("LIST").U32(5).Put("data!").Fill(1);
    wav.Put("fmt ").U32(19).U16(1).U16(1).U32(44100).U32(88200).U16(2).U16(16).Fill(4);
    wav.Put("bext").U32(0x12).Fill(18, 'f').Put("data").U32(4410);
    wav.Put(AsPcm(expected)).Put("cue ").U32(0);
    const auto reader = bench_.Reader(false, wav.bytes);
    EXPECT_EQ(reader->Measure(), 1U);
    SetTraceSink({});
    EXPECT_THAT(trace, ElementsAre("Id=LIST,bytecount=5", "Id=bext,bytecount=12"));
    EXPECT_EQ(reader->FileFormat().dataOffset, wav.bytes.size() - 8 - 4410);
    // What follows the data is not heard.
    reader->OpenAt(0, {});
    expected.resize(2 * 2205);
    EXPECT_EQ(bench_.Get(*reader, {}, 2), expected);
}

TEST_F(WavReaderTest, HostileHeadersEndWithARefusal) {
    ByteBuilder endless;
    endless.Put("RIFF").U32(0).Put("WAVE");
    for (int i = 0; i < 100000; ++i)
        endless.Put("zero").U32(0);
    ByteBuilder shortFormat;
    shortFormat.Put("RIFF").U32(0).Put("WAVE").Put("fmt ").U32(12).U16(1).U16(1).U32(44100);
    shortFormat.U32(88200).Put("data").U32(4).Fill(4);
    const Bytes whole = WavBytes({}, Bytes(10));
    const Bytes cases[] = {
        endless.bytes,
        shortFormat.bytes,
        ByteBuilder().Put("RIFF").U32(8).Put("WAVE").Put("JUNK").U32(0xFFFFFFFF).Fill(64).bytes,
        ByteBuilder().Put("RIFF").U32(8).Put("WAVE").Put("JUNK").U32(0xFFFFFFF8).Fill(64).bytes,
        ByteBuilder().Put("no wave file at all, but some text").bytes,
        Bytes(4096),
    };
    for (const Bytes& file : cases) {
        EXPECT_EQ(Measure(file), 0U);
        EXPECT_EQ(refusal_, u"Only mono or stereo allowed.");
    }
    for (std::size_t size = 1; size < whole.size(); ++size) {
        EXPECT_EQ(Measure(Bytes(whole.begin(), whole.begin() + static_cast<long>(size))), 0U);
        EXPECT_NE(refusal_, u"");
    }
    // Shorter than a period.
    EXPECT_EQ(Measure(whole), 0U);
}

TEST_F(WavReaderTest, SeeksLandOnThePeriodAndSilenceIsBehindTheEnd) {
    const Samples sound = ExtremeNoise(1, 24000);
    const auto reader = bench_.Reader(false, WavBytes({.sampleRate = 48000}, AsPcm(sound)));
    const PlaybackFormat output{48000, 1};
    const auto from = [&](long period) {
        return Samples(sound.begin() + 2400 * period, sound.end());
    };
    reader->OpenAt(3, output);
    EXPECT_EQ(bench_.Get(*reader, output, 7), from(3));
    EXPECT_THAT(bench_.Get(*reader, output, 1), Each(0));
    EXPECT_EQ(reader->PositionAt(7), 7U);
    EXPECT_EQ(bench_.Get(*reader, output, 3), from(7));
    reader->SeekPeriod(0xFFFFFFFF);
    EXPECT_THAT(bench_.Get(*reader, output, 1), Each(0));
    reader->CloseReader();
    EXPECT_FALSE(reader->IsOpen());
    reader->OpenAt(8, output);  // opens its file again
    EXPECT_EQ(bench_.Get(*reader, output, 2), from(8));
    EXPECT_THAT(bench_.files.boxes.Texts(), IsEmpty());
}

TEST_F(WavReaderTest, AMissingFileIsReportedAndStaysClosed) {
    const auto reader = MakeReader(bench_.services, bench_.files.folder.Path(u"none.wav"), false);
    EXPECT_EQ(reader->Measure(), 0U);
    ASSERT_EQ(bench_.files.boxes.shown.size(), 1U);
    EXPECT_TRUE(bench_.files.boxes.shown[0].text.starts_with(u"Cannot open file : "));
    reader->OpenAt(0, {});
    EXPECT_FALSE(reader->IsOpen());
    EXPECT_THAT(bench_.Get(*reader, {}, 1), Each(0));
}

}  // namespace
}  // namespace orma::test
