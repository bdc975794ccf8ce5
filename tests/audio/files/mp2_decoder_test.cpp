#include "audio/files/mp2_decoder.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"

namespace orma::test {
namespace {

constexpr std::size_t kFrame = kMp2FrameSamples;

struct Mp2DecoderTest : testing::Test, ReaderBench {
    /// Decodes as a reader does, one frame length after another, zeros behind the end; the samples
    /// per channel of every frame.
    std::vector<std::size_t> Decode(const Bytes& stream) {
        std::vector<std::size_t> counts;
        decoder.Mp2DecoderFinish();
        decoder.Mp2DecoderStart({{stream[0], stream[1], stream[2], stream[3]}});
        for (std::size_t at = 4; at < stream.size();) {
            const std::span<std::uint8_t> space = decoder.FrameSpace();
            const std::size_t got = std::min(space.size(), stream.size() - at);
            std::ranges::fill(space, std::uint8_t{0});
            std::copy_n(&stream[at], got, space.begin());
            at += got;
            unsigned channels = 0;
            counts.push_back(decoder.Mp2DecodeFrame(out, channels));
            EXPECT_EQ(channels == 0, counts.back() == 0);
        }
        return counts;
    }

    std::array<std::int16_t, 2 * kFrame> out{};
};

TEST_F(Mp2DecoderTest, TheHeaderRulesTheLengthAndTheSettingWhereThereIsNone) {
    audio.bitrate.SetMp2Bitrate(7, files.report);
    const Bytes stream = EncodeMp2(audio, files.report, Tone(700, 48000, 15000, 5 * kFrame));
    audio.bitrate.SetMp2Bitrate(3, files.report);
    EXPECT_EQ(Decode(stream), std::vector<std::size_t>(5, kFrame));

    // Where the bytes are no header, as long as the setting says; the next one counts again.
    decoder.Mp2DecoderFinish();
    EXPECT_EQ(decoder.FrameBytes(), 192U);
    decoder.Mp2DecoderStart({{'R', 'I', 'F', 'F'}});
    const std::array<std::uint8_t, 4> next = {0xFF, 0xFD, 0x84, 0xC4};
    std::ranges::copy(next, decoder.FrameSpace().subspan(188).begin());
    unsigned channels = 7;
    EXPECT_EQ(decoder.Mp2DecodeFrame(out, channels), 0U);
    EXPECT_EQ(channels, 7U);
    EXPECT_EQ(decoder.FrameBytes(), 384U);
    decoder.Mp2DecoderFinish();
    EXPECT_EQ(decoder.Mp2DecodeFrame(out, channels), 0U);
    EXPECT_TRUE(decoder.FrameSpace().empty());
}

TEST_F(Mp2DecoderTest, HeadersThatCannotBeDecodedGiveNoSamplesButALineUpToAHundred) {
    const std::pair<Mp2Header, const char*> cases[] = {
        {{{0xFF, 0xFD, 0x04, 0xC4}}, "MAD_RECOVERABLE 259\n"},  // free format
        {{{0xFF, 0xFD, 0xF4, 0xC4}}, "MAD_RECOVERABLE 259\n"},  // forbidden bit rate
        {{{0xFF, 0xFD, 0x8C, 0xC4}}, "MAD_RECOVERABLE 260\n"},  // reserved sampling rate
        {{{0xFF, 0xFB, 0x84, 0xC4}}, "MAD_RECOVERABLE 257\n"},  // Layer III
        {{{0xFF, 0xFD, 0xC4, 0xC4}}, "MAD_RECOVERABLE 546\n"},  // one channel at 256 kbit/s
        {{{0xFF, 0xFD, 0x88, 0xC4}}, "MAD_FLOW_STOP\n"},        // 32000 Hz: longer than reckoned
    };
    std::string expected;
    for (const auto& [header, line] : cases) {
        Bytes stream(header.FrameBytes(audio.bitrate.FrameBytes()) + 4);
        std::ranges::copy(header.bytes, stream.begin());
        EXPECT_EQ(Decode(stream), std::vector<std::size_t>{0});
        expected += line;
    }
    // Garbage does not fill the disk: a hundred lines for each start.
    Decode(Bytes(192 * 150, 0x55));
    for (int line = 0; line < 100; ++line)
        expected += "MAD_RECOVERABLE 257\n";
    const Bytes log = ReadFileBytes(files.folder.Path(u"mp2dec.txt"));
    EXPECT_EQ(std::string(log.begin(), log.end()), expected);
}

TEST(Mp2Header, ReckonsTheFrameLengthOfLayer2Alone) {
    const std::pair<Mp2Header, std::size_t> cases[] = {
        {{{0xFF, 0xFD, 0x14}}, 96},    // 32 kbit/s at 48000 Hz
        {{{0xFF, 0xFC, 0x86}}, 385},   // 128, padded, with CRC
        {{{0xFF, 0xFD, 0x80}}, 417},   // 44100 Hz
        {{{0xFF, 0xFD, 0xE2}}, 1254},  // the longest: 384, 44100 Hz, padded
        {{{0xFF, 0xFD, 0x88}}, 384},   // 32000 Hz counts as 48000
        {{{0xFF, 0xFD, 0x04}}, 1111},  // free format
        {{{0xFF, 0xFB, 0x84}}, 1111},  // Layer III
        {{{0xFE, 0xFD, 0x84}}, 1111},
    };
    for (const auto& [header, bytes] : cases)
        EXPECT_EQ(header.FrameBytes(1111), bytes) << unsigned{header.bytes[2]};
}

}  // namespace
}  // namespace orma::test
