#include "audio/files/mp2_decoder.h"

#include <algorithm>
#include <optional>
#include <random>

#include <gtest/gtest.h>
#include <mad.h>

#include "audio/files/mp2_pipeline.h"
#include "audio/files/signals.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

constexpr std::size_t kFrame = kMp2FrameSamples;

// Samples by which sound comes later out of a Layer II encoder and decoder than it went in: the
// two filter banks.
constexpr std::size_t kCodecDelay = 481;

struct Decoded {
    Samples pcm;
    std::vector<std::size_t> counts;  // samples per channel of every frame
    unsigned channels = 0;
};

class Mp2DecoderTest : public ::testing::Test {
  protected:
    Bytes Encode(const Samples& pcm, bool stereo, std::uint32_t bitrateIndex) {
        audio_.bitrate.SetMp2Bitrate(bitrateIndex, files_.report);
        Bytes stream;
        Mp2Pipeline pipeline(audio_, files_.report);
        EXPECT_TRUE(pipeline.Mp2EncoderInit(
            [&](ByteSpan block) { stream.insert(stream.end(), block.begin(), block.end()); },
            stereo, 48000));
        pipeline.Mp2EncodeSamples(AsPcm(pcm));
        pipeline.Mp2EncodeFlush();
        return stream;
    }

    /// Decodes as a reader does: one frame length after another, zeros behind the end.
    Decoded Decode(const Bytes& stream) {
        Decoded all;
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
            const std::size_t count = decoder.Mp2DecodeFrame(out, all.channels);
            all.counts.push_back(count);
            all.pcm.insert(all.pcm.end(), out.begin(),
                           out.begin() + static_cast<std::ptrdiff_t>(count * all.channels));
        }
        return all;
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

/// The error of `decoded` against `original` at the codec's delay, without the first frame, in
/// which the filter banks settle.
double QualityDb(const Samples& original, const Samples& decoded) {
    const std::vector<double> expected(
        original.begin() + static_cast<std::ptrdiff_t>(kFrame - kCodecDelay),
        original.end() - static_cast<std::ptrdiff_t>(kCodecDelay));
    return SignalToErrorDb(expected, std::span(decoded).subspan(kFrame));
}

TEST_F(Mp2DecoderTest, GivesAnEncodeBackInPlace) {
    const Samples left = Tone(700, 48000, 15000, 20 * kFrame);
    const Samples right = Tone(1100, 48000, 9000, 20 * kFrame);
    const Decoded mono = Decode(Encode(left, false, 9));
    EXPECT_EQ(mono.counts, std::vector<std::size_t>(20, kFrame));
    EXPECT_EQ(mono.channels, 1U);
    EXPECT_GT(QualityDb(left, mono.pcm), 55.0);
    const Decoded stereo = Decode(Encode(Interleave(left, right), true, 11));
    EXPECT_EQ(stereo.counts, std::vector<std::size_t>(20, kFrame));
    EXPECT_EQ(stereo.channels, 2U);
    EXPECT_GT(QualityDb(left, Channel(stereo.pcm, 2, 0)), 45.0);
    EXPECT_GT(QualityDb(right, Channel(stereo.pcm, 2, 1)), 45.0);
    EXPECT_FALSE(files_.storage.Exists(log_));
}

/// A whole stream through the library alone, each sample by the definition of the conversion.
Samples DecodeBare(Bytes stream) {
    stream.resize(stream.size() + MAD_BUFFER_GUARD);
    mad_stream source;
    mad_frame frame;
    mad_synth synth;
    mad_stream_init(&source);
    mad_frame_init(&frame);
    mad_synth_init(&synth);
    mad_stream_buffer(&source, stream.data(), stream.size());
    Samples samples;
    while (mad_frame_decode(&frame, &source) == 0) {
        mad_synth_frame(&synth, &frame);
        for (unsigned i = 0; i < synth.pcm.length; ++i) {
            for (unsigned channel = 0; channel < synth.pcm.channels; ++channel) {
                const std::int64_t value = std::int64_t{synth.pcm.samples[channel][i]} + 4096;
                const std::int64_t most = (1 << 28) - 1;
                samples.push_back(static_cast<std::int16_t>(
                    (value > most ? most : std::max(value, -most - 1)) >> 13));
            }
        }
    }
    mad_frame_finish(&frame);
    mad_stream_finish(&source);
    return samples;
}

TEST_F(Mp2DecoderTest, ChangesNothingThatTheLibraryDecodes) {
    const Bytes stream = Encode(ExtremeNoise(4, 2 * 8 * kFrame), true, 8);
    const Decoded decoded = Decode(stream);
    EXPECT_EQ(decoded.pcm.size(), 2 * 8 * kFrame);
    EXPECT_EQ(decoded.pcm, DecodeBare(stream));
    EXPECT_EQ(std::ranges::max(decoded.pcm), 32767) << "clipped";
    EXPECT_EQ(std::ranges::min(decoded.pcm), -32768) << "clipped";
}

TEST_F(Mp2DecoderTest, ADamagedHeaderCostsItsOwnFrameOnly) {
    Bytes stream = Encode(Tone(700, 48000, 15000, 10 * kFrame), false, 7);
    stream[4 * 384] = 0;
    std::vector<std::size_t> expected(10, kFrame);
    expected[4] = 0;
    EXPECT_EQ(Decode(stream).counts, expected);
    EXPECT_EQ(LogText(), "MAD_RECOVERABLE 257\n");
}

TEST_F(Mp2DecoderTest, TheHeaderRulesTheLengthAndTheSettingWhereThereIsNone) {
    const Bytes stream = Encode(Tone(700, 48000, 15000, 5 * kFrame), false, 7);
    audio_.bitrate.SetMp2Bitrate(3, files_.report);
    EXPECT_EQ(Decode(stream).counts, std::vector<std::size_t>(5, kFrame));

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
        EXPECT_EQ(Decode(stream).counts, std::vector<std::size_t>{0});
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
    for (unsigned seed = 0; seed < 400; ++seed) {
        std::mt19937 random(seed);
        Bytes stream = seed % 2 == 0 ? mono : stereo;
        for (unsigned flips = 1 + seed % 300; flips > 0; --flips) {
            // Half of the damage goes where it hurts most: header, allocation and scale factors.
            const std::size_t frame = stream.size() / 12 * (random() % 12);
            const std::size_t at = frame + random() % (flips % 2 == 0 ? 100 : stream.size() / 12);
            stream[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
        }
        audio_.bitrate.SetMp2Bitrate(seed % 12, files_.report);
        const Decoded decoded = Decode(stream);
        for (const std::size_t count : decoded.counts) {
            ASSERT_TRUE(count == 0 || count == kFrame) << seed;
            whole += count / kFrame;
        }
        ASSERT_LE(decoded.channels, 2U) << seed;
    }
    EXPECT_GT(whole, 500U);
}

TEST_F(Mp2DecoderTest, RandomFramesUnderLegalHeadersDoNoHarm) {
    log_.clear();
    std::mt19937 random(3);
    for (unsigned round = 0; round < 1000; ++round) {
        const Mp2Header header{{0xFF, static_cast<std::uint8_t>(0xFC | (random() & 1)),
                                static_cast<std::uint8_t>(random()),
                                static_cast<std::uint8_t>(random())}};
        Bytes stream(header.FrameBytes(192));
        for (std::uint8_t& byte : stream)
            byte = static_cast<std::uint8_t>(random());
        // Nothing but ones asks for the most bits that a frame can ask for.
        if (round % 4 == 0) std::ranges::fill(stream, std::uint8_t{0xFF});
        std::ranges::copy(header.bytes, stream.begin());
        const std::size_t count = Decode(stream).counts.front();
        ASSERT_TRUE(count == 0 || count == kFrame) << round;
    }
}

}  // namespace
}  // namespace orma::test
