#include "audio/files/mp2_pipeline.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>
#include <twolame.h>

#include "audio/files/mp2_header.h"
#include "audio/files/signals.h"
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

class Mp2PipelineTest : public ::testing::Test {
  protected:
    /// A stream through the pipeline, fed in pieces of random size up to `largest` bytes.
    Bytes Encode(const Samples& pcm, bool stereo, std::uint32_t rate = 44100,
                 std::size_t largest = 4410) {
        Bytes all;
        const auto output = [&](ByteSpan block) {
            all.insert(all.end(), block.begin(), block.end());
        };
        EXPECT_TRUE(pipeline_.Mp2EncoderInit(output, stereo, rate));
        std::mt19937 random(1);
        for (ByteSpan rest = AsPcm(pcm); !rest.empty();) {
            const std::size_t size = std::min(rest.size(), 1 + random() % largest);
            pipeline_.Mp2EncodeSamples(rest.first(size));
            rest = rest.subspan(size);
        }
        pipeline_.Mp2EncodeFlush();
        return all;
    }

    /// The same stream by the definition of the conversion and the library alone: frames until
    /// the conversion has consumed every sample, with silence behind the end.
    Bytes Expected(const Samples& pcm, bool stereo, std::uint32_t rate = 44100) {
        const unsigned channels = stereo ? 2 : 1;
        const std::size_t count = pcm.size() / channels;
        Samples left = Channel(pcm, channels, 0);
        Samples right = Channel(pcm, channels, channels - 1);
        left.resize(count + 2 * kFrame);
        right.resize(count + 2 * kFrame);
        BareEncoder encoder(audio_.bitrate.BitsPerSecond(), stereo);
        LiteralConverter leftConverter{.rate = rate};
        LiteralConverter rightConverter{.rate = rate};
        Bytes expected;
        while (leftConverter.position < count) {
            const Samples outLeft = leftConverter.Convert(left, kFrame);
            encoder.Encode(outLeft, rightConverter.Convert(right, kFrame), expected);
        }
        return expected;
    }

    void SetBitrate(std::uint32_t index) { audio_.bitrate.SetMp2Bitrate(index, files_.report); }

    TestFiles files_;
    AudioState audio_;
    Mp2Pipeline pipeline_{audio_, files_.report};
};

TEST_F(Mp2PipelineTest, EncodesAsTheDefinitionSays) {
    const Samples pcm = ExtremeNoise(1, 30000);
    const Bytes expected = Expected(pcm, false);
    for (const std::size_t largestPiece : {1U, 7U, 4410U, 1'000'000U})
        EXPECT_EQ(Encode(pcm, false, 44100, largestPiece), expected) << largestPiece;
    // Far below 48000 Hz the flush still encodes every real sample.
    const Samples low = Tone(300, 8000, 20000, 3000);
    EXPECT_EQ(Encode(low, false, 8000), Expected(low, false, 8000));
    SetBitrate(9);
    const Samples both = Interleave(Tone(440, 44100, 9000, 20000), Tone(1234, 44100, 30000, 20000));
    EXPECT_EQ(Encode(both, true), Expected(both, true));
}

TEST_F(Mp2PipelineTest, At48000TheSamplesReachTheEncoderUnchanged) {
    SetBitrate(7);
    const Samples pcm = ExtremeNoise(2, 3 * 2 * kFrame);
    BareEncoder encoder(128000, true);
    Bytes expected;
    for (std::size_t frame = 0; frame < 3; ++frame) {
        const Samples part(pcm.begin() + static_cast<std::ptrdiff_t>(frame * 2 * kFrame),
                           pcm.begin() + static_cast<std::ptrdiff_t>((frame + 1) * 2 * kFrame));
        encoder.Encode(Channel(part, 2, 0), Channel(part, 2, 1), expected);
    }
    EXPECT_EQ(Encode(pcm, true, 48000), expected);
    EXPECT_EQ(pipeline_.Frames(), 3U);
}

TEST_F(Mp2PipelineTest, FramesFollowFromTheRealSamplesAlone) {
    const struct {
        std::size_t samples;
        std::uint32_t rate;
        std::uint32_t frames;
    } cases[] = {
        {0, 44100, 0},           {1, 44100, 1},
        {1058, 44100, 1},  // what the first frame consumes, though it waits for 1152
        {1059, 44100, 2},        {1152, 44100, 2},
        {2 * 44100, 44100, 84},  // 83 and a third
        {3 * 44100, 44100, 125}, {3 * 44100 + 1, 44100, 126},
        {1152, 48000, 1},        {1153, 48000, 2},
    };
    for (const auto& one : cases) {
        const Bytes all = Encode(Samples(one.samples, 1000), false, one.rate);
        EXPECT_EQ(pipeline_.Frames(), one.frames) << one.samples;
        EXPECT_EQ(all.size(), one.frames * audio_.bitrate.FrameBytes());
    }
}

TEST_F(Mp2PipelineTest, HandsOutABlockAsSoonAsItIsFullAndTheRestAtTheFlush) {
    SetBitrate(7);
    std::vector<std::size_t> handed;
    const auto output = [&](ByteSpan block) { handed.push_back(block.size()); };
    ASSERT_TRUE(pipeline_.Mp2EncoderInit(output, false, 48000));
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(21 * kFrame)));
    EXPECT_TRUE(handed.empty());
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(kFrame)));  // 22 * 384 = 8192 + 256
    EXPECT_EQ(handed, (std::vector<std::size_t>{8192}));
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(28 * kFrame)));
    pipeline_.Mp2EncodeFlush();
    EXPECT_EQ(handed, (std::vector<std::size_t>{8192, 8192, 2816}));
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(5000)));  // no stream any more
    pipeline_.Mp2EncodeFlush();
    EXPECT_EQ(handed.size(), 3U);

    handed.clear();
    ASSERT_TRUE(pipeline_.Mp2EncoderInit(output, false, 48000));
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(64 * kFrame)));
    pipeline_.Mp2EncodeFlush();
    EXPECT_EQ(handed, (std::vector<std::size_t>{8192, 8192, 8192})) << "nothing is left";
}

TEST_F(Mp2PipelineTest, RefusesWhatTheEncoderRefusesAndHeadsEveryFrameAsTheSettingsSay) {
    for (std::uint32_t index = 0; index < Mp2Bitrate::kBitsPerSecond.size(); ++index) {
        for (const bool stereo : {false, true}) {
            SetBitrate(index);
            const bool legal = BareEncoder(audio_.bitrate.BitsPerSecond(), stereo).accepted;
            EXPECT_EQ(audio_.bitrate.IsLegalFor(stereo), legal) << index << stereo;
            EXPECT_EQ(pipeline_.Mp2EncoderInit([](ByteSpan) {}, stereo), legal) << index << stereo;
            EXPECT_EQ(pipeline_.IsActive(), legal);
            if (!legal) continue;
            audio_.stereo = stereo;
            const Bytes all = Encode(Samples(3 * kFrame, 99), stereo, 48000);
            const auto header = Mp2Header::ForSettings(audio_).bytes;
            for (std::size_t at = 0; at < all.size(); at += audio_.bitrate.FrameBytes())
                EXPECT_TRUE(std::equal(header.begin(), header.end(), all.data() + at)) << index;
        }
    }
    SetBitrate(3);
    EXPECT_FALSE(pipeline_.Mp2EncoderInit([](ByteSpan) {}, false, 96000));
    EXPECT_TRUE(files_.boxes.shown.empty());
}

TEST_F(Mp2PipelineTest, ANewStreamKnowsNothingOfAnAbandonedOne) {
    const Samples pcm = ExtremeNoise(5, 5000);
    const Bytes expected = Encode(pcm, false);
    ASSERT_TRUE(pipeline_.Mp2EncoderInit([](ByteSpan) {}, false));
    pipeline_.Mp2EncodeSamples(AsPcm(Samples(4001, -5)));
    EXPECT_EQ(Encode(pcm, false), expected);
}

}  // namespace
}  // namespace orma::test
