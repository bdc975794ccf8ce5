#include "audio/files/mp2_decoder.h"

#include <algorithm>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "audio/files/reader_bench.h"

namespace orma::test {
namespace {

constexpr std::size_t kFrame = kMp2FrameSamples;

class Mp2DecoderTest : public ::testing::Test {
  protected:
    Bytes Encode(const Samples& pcm, bool stereo, std::uint32_t bitrateIndex) {
        audio_.bitrate.SetMp2Bitrate(bitrateIndex, files_.report);
        return EncodeMp2(audio_, files_.report, pcm, stereo);
    }

    /// Decodes as a reader does, one frame length after another, zeros behind the end; the samples
    /// per channel of every frame.
    std::vector<std::size_t> Decode(const Bytes& stream) {
        std::vector<std::size_t> counts;
        std::array<std::int16_t, 2 * kFrame> out{};
        if (!decoder_) decoder_.emplace(audio_, files_.storage, log_);
        Mp2Decoder& decoder = *decoder_;
        decoder.Mp2DecoderFinish();
        decoder.Mp2DecoderStart({{stream[0], stream[1], stream[2], stream[3]}});
        for (std::size_t at = 4; at < stream.size();) {
            const std::span<std::uint8_t> space = decoder.FrameSpace();
            const std::size_t got = std::min(space.size(), stream.size() - at);
            std::ranges::fill(space, std::uint8_t{0});
            std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(at), got, space.begin());
            at += got;
            unsigned channels = 0;
            counts.push_back(decoder.Mp2DecodeFrame(out, channels));
            EXPECT_EQ(channels == 0, counts.back() == 0);
            EXPECT_LE(channels, 2U);
        }
        return counts;
    }

    std::string LogText() {
        const Bytes bytes = ReadFileBytes(log_);
        return {bytes.begin(), bytes.end()};
    }

    TestFiles files_;
    AudioState audio_;
    Text log_ = files_.folder.Path(u"mp2dec.txt");
    std::optional<Mp2Decoder> decoder_;
};

TEST_F(Mp2DecoderTest, TheHeaderRulesTheLengthAndTheSettingWhereThereIsNone) {
    const Bytes stream = Encode(Tone(700, 48000, 15000, 5 * kFrame), false, 7);
    audio_.bitrate.SetMp2Bitrate(3, files_.report);
    EXPECT_EQ(Decode(stream), std::vector<std::size_t>(5, kFrame));

    Mp2Decoder decoder(audio_, files_.storage, {});
    EXPECT_EQ(decoder.FrameBytes(), 192U);
    decoder.Mp2DecoderStart({{'R', 'I', 'F', 'F'}});
    EXPECT_EQ(decoder.FrameSpace().size(), 192U);
    decoder.Mp2DecoderStart({{0xFF, 0xFD, 0x84, 0xC4}});  // active: nothing happens
    EXPECT_EQ(decoder.FrameBytes(), 192U);
    const std::array<std::uint8_t, 4> next = {0xFF, 0xFD, 0x84, 0xC4};
    std::ranges::copy(next, decoder.FrameSpace().last(4).begin());
    std::array<std::int16_t, 2 * kFrame> out{};
    unsigned channels = 7;
    EXPECT_EQ(decoder.Mp2DecodeFrame(out, channels), 0U);
    EXPECT_EQ(channels, 7U);
    EXPECT_EQ(decoder.FrameBytes(), 384U);
    decoder.Mp2DecoderFinish();
    EXPECT_EQ(decoder.Mp2DecodeFrame(out, channels), 0U);
    EXPECT_TRUE(decoder.FrameSpace().empty());
}

TEST_F(Mp2DecoderTest, HeadersThatCannotBeDecodedGiveNoSamplesButALineUpToAHundred) {
    const struct {
        Mp2Header header;
        const char* line;
    } cases[] = {
        {{{0xFF, 0xFD, 0x04, 0xC4}}, "MAD_RECOVERABLE 259\n"},  // free format
        {{{0xFF, 0xFD, 0xF4, 0xC4}}, "MAD_RECOVERABLE 259\n"},  // forbidden bit rate
        {{{0xFF, 0xFD, 0x8C, 0xC4}}, "MAD_RECOVERABLE 260\n"},  // reserved sampling rate
        {{{0xFF, 0xFB, 0x84, 0xC4}}, "MAD_RECOVERABLE 257\n"},  // Layer III
        {{{0xFF, 0xFD, 0xC4, 0xC4}}, "MAD_RECOVERABLE 546\n"},  // one channel at 256 kbit/s
        {{{0xFF, 0xFD, 0x88, 0xC4}}, "MAD_FLOW_STOP\n"},        // 32000 Hz: longer than reckoned
    };
    std::string expected;
    for (const auto& tried : cases) {
        Bytes stream(tried.header.FrameBytes(audio_.bitrate.FrameBytes()) + 4);
        std::ranges::copy(tried.header.bytes, stream.begin());
        EXPECT_EQ(Decode(stream), std::vector<std::size_t>{0});
        expected += tried.line;
    }
    EXPECT_EQ(LogText(), expected);
    // Garbage does not fill the disk: a hundred lines for each start.
    Decode(Bytes(192 * 150, 0x55));
    for (int line = 0; line < 100; ++line)
        expected += "MAD_RECOVERABLE 257\n";
    EXPECT_EQ(LogText(), expected);
}

TEST_F(Mp2DecoderTest, FlippedBitsNeverGiveAnythingButWholeFrames) {
    log_.clear();
    const Bytes mono = Encode(ExtremeNoise(1, 12 * kFrame), false, 9);
    const Bytes stereo = Encode(ExtremeNoise(2, 2 * 12 * kFrame), true, 11);
    std::size_t whole = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::mt19937 random(seed);
        Bytes stream = seed % 2 == 0 ? mono : stereo;
        for (unsigned flips = 1 + seed % 300; flips > 0; --flips) {
            // Half of the damage goes where it hurts most: header, allocation and scale factors.
            const std::size_t frame = stream.size() / 12 * (random() % 12);
            const std::size_t at = frame + random() % (flips % 2 == 0 ? 100 : stream.size() / 12);
            stream[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
        }
        audio_.bitrate.SetMp2Bitrate(seed % 12, files_.report);
        for (const std::size_t count : Decode(stream)) {
            ASSERT_TRUE(count == 0 || count == kFrame) << seed;
            whole += count / kFrame;
        }
    }
    EXPECT_GT(whole, 250U);
}

}  // namespace
}  // namespace orma::test
