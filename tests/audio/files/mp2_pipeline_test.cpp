#include "audio/files/mp2_pipeline.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>
#include <twolame.h>

#include "audio/files/mp2_header.h"
#include "support/signals.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

constexpr std::size_t kFrame = kMp2FrameSamples;

/// The library alone, without any check of ours: its bytes, or nothing when it refuses the format.
struct BareEncoder {
    BareEncoder(std::uint32_t bitsPerSecond, bool stereo) : options(twolame_init()) {
        twolame_set_verbosity(options, 0);
        twolame_set_num_channels(options, stereo ? 2 : 1);
        twolame_set_mode(options, stereo ? TWOLAME_STEREO : TWOLAME_MONO);
        twolame_set_in_samplerate(options, 48000);
        twolame_set_out_samplerate(options, 48000);
        twolame_set_bitrate(options, static_cast<int>(bitsPerSecond / 1000));
        accepted = twolame_init_params(options) == 0;
    }
    ~BareEncoder() { twolame_close(&options); }
    BareEncoder(const BareEncoder&) = delete;
    BareEncoder& operator=(const BareEncoder&) = delete;

    void Encode(const Samples& left, const Samples& right, Bytes& to) {
        std::array<std::uint8_t, 4096> frame{};
        const int bytes =
            twolame_encode_buffer(options, left.data(), right.data(), kFrame, frame.data(), 4096);
        to.insert(to.end(), frame.begin(), frame.begin() + bytes);
    }

    twolame_options* options;
    bool accepted = false;
};

struct Mp2PipelineTest : testing::Test, TestFiles {
    /// A stream through the pipeline, fed in pieces of random size up to `largest` bytes.
    Bytes Encode(const Samples& pcm, bool stereo, std::uint32_t rate, std::size_t largest = 4410) {
        Bytes all;
        const auto output = [&](ByteSpan block) {
            all.insert(all.end(), block.begin(), block.end());
        };
        EXPECT_TRUE(pipeline.Mp2EncoderInit(output, stereo, rate));
        std::mt19937 random(1);
        for (ByteSpan rest = AsPcm(pcm); !rest.empty();) {
            const std::size_t size = std::min(rest.size(), 1 + random() % largest);
            pipeline.Mp2EncodeSamples(rest.first(size));
            rest = rest.subspan(size);
        }
        pipeline.Mp2EncodeFlush();
        return all;
    }

    /// The same stream by the definition of the conversion and the library alone: frames until
    /// the conversion has consumed every sample, with silence behind the end. At 48000 Hz nothing
    /// is converted.
    Bytes Expected(const Samples& pcm, bool stereo, std::uint32_t rate) {
        const unsigned channels = stereo ? 2 : 1;
        const std::size_t count = pcm.size() / channels;
        BareEncoder encoder(audio.bitrate.BitsPerSecond(), stereo);
        std::array<LiteralConverter, 2> converters{{{.rate = rate}, {.rate = rate}}};
        Bytes expected;
        for (std::size_t frame = 0; converters[0].position < count; ++frame) {
            std::array<Samples, 2> sides;
            for (unsigned side : {0U, 1U}) {
                Samples in(count + 2 * kFrame);
                for (std::size_t i = 0; i < count; ++i)
                    in[i] = pcm[i * channels + side % channels];
                const auto at = in.begin() + static_cast<std::ptrdiff_t>(frame * kFrame);
                sides[side] = converters[side].Convert(in, kFrame);
                if (rate == 48000) sides[side].assign(at, at + kFrame);
            }
            encoder.Encode(sides[0], sides[1], expected);
        }
        return expected;
    }

    void SetBitrate(std::uint32_t index) { audio.bitrate.SetMp2Bitrate(index, report); }

    AudioState audio;
    Mp2Pipeline pipeline{audio, report};
};

TEST_F(Mp2PipelineTest, EncodesAsTheDefinitionSaysWhateverThePiecesAndTheStreamBefore) {
    const Samples noise = ExtremeNoise(1, 20000);
    for (const std::uint32_t rate : {44100U, 48000U, 32000U, 8000U}) {
        for (const bool stereo : {false, true}) {
            SetBitrate(stereo ? 9 : 3);
            for (const std::size_t count : {0U, 2U, 1058U, 1060U, 1152U, 1154U, 20000U}) {
                const Samples sound(noise.begin(), noise.begin() + static_cast<long>(count));
                const Bytes expected = Expected(sound, stereo, rate);
                for (const std::size_t largestPiece : {4410U, 7U, 1'000'000U})
                    EXPECT_EQ(Encode(sound, stereo, rate, largestPiece), expected)
                        << count << " samples of " << rate << " Hz, stereo " << stereo
                        << ", pieces of " << largestPiece;
                EXPECT_EQ(expected.size(), pipeline.Frames() * audio.bitrate.FrameBytes());
                ASSERT_TRUE(pipeline.Mp2EncoderInit([](ByteSpan) {}, stereo));  // and abandoned
                pipeline.Mp2EncodeSamples(AsPcm(Samples(4002, -5)));
            }
        }
    }
}

TEST_F(Mp2PipelineTest, HandsOutABlockAsSoonAsItIsFull) {
    SetBitrate(7);  // 384 bytes a frame
    std::size_t blocks = 0;
    const auto output = [&](ByteSpan block) { blocks += block.size() == 8192 ? 1 : 100; };
    ASSERT_TRUE(pipeline.Mp2EncoderInit(output, false, 48000));
    for (std::size_t frames = 1; frames <= 64; ++frames) {  // the last one ends with its block
        pipeline.Mp2EncodeSamples(AsPcm(Samples(kFrame)));
        EXPECT_EQ(blocks, frames * 384 / 8192);
    }
}

TEST_F(Mp2PipelineTest, RefusesWhatTheEncoderRefusesAndHeadsEveryFrameAsTheSettingsSay) {
    for (std::uint32_t index = 0; index < Mp2Bitrate::kBitsPerSecond.size(); ++index) {
        for (const bool stereo : {false, true}) {
            SetBitrate(index);
            const bool legal = BareEncoder(audio.bitrate.BitsPerSecond(), stereo).accepted;
            EXPECT_EQ(audio.bitrate.IsLegalFor(stereo), legal) << index << stereo;
            EXPECT_EQ(pipeline.Mp2EncoderInit([](ByteSpan) {}, stereo), legal) << index << stereo;
            EXPECT_EQ(pipeline.IsActive(), legal);
            if (!legal) continue;
            audio.stereo = stereo;
            const Bytes all = Encode(Samples(3 * kFrame, 99), stereo, 48000);
            const auto header = Mp2Header::ForSettings(audio).bytes;
            for (std::size_t at = 0; at < all.size(); at += audio.bitrate.FrameBytes())
                EXPECT_TRUE(std::equal(header.begin(), header.end(), all.data() + at)) << index;
        }
    }
    SetBitrate(3);
    for (const std::uint32_t rate : {0U, 44101U, 47999U, 48001U, 96000U})
        EXPECT_FALSE(pipeline.Mp2EncoderInit([](ByteSpan) {}, false, rate)) << rate;
    EXPECT_TRUE(boxes.shown.empty());
}

}  // namespace
}  // namespace orma::test
