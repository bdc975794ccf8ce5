#include "audio/engine/input_processing.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/signals.h"

namespace orma::test {
namespace {

constexpr std::array<std::int32_t, 5> kPassesThrough{0, 0, 0, 0, 1 << 28};

EqualizerBand Band(std::uint16_t frequency, std::int16_t gain, std::uint16_t q) {
    return {frequency, gain, q, 1};
}

EqualizerSet Set(const Text& name, EqualizerBand low, EqualizerBand middle = {},
                 EqualizerBand high = {}) {
    return {{low, middle, high}, 1, name, 0};
}

/// A headset state for each of the two places that hold it.
struct FakeHeadset : HeadsetProbe {
    int State(bool alternativeKey) override { return alternativeKey ? alternative : state; }

    int state = -1;
    int alternative = -1;
};

class InputProcessingTest : public testing::Test {
  protected:
    InputProcessingTest() {
        settings.sets[0] =
            Set(u"mic_int", Band(200, 30, 7), Band(1000, -45, 10), Band(6000, 60, 20));
        settings.sets[1] = Set(u"mic_ext", Band(11025, 60, 10));
        settings.sets[2] = Set(u"mic", Band(100, 10, 7));
    }

    void Load(const Text& name) {
        settings.currentSetName = name;
        processing.Load(settings, 44100);
    }

    Samples Processed(Samples samples, unsigned channels) {
        processing.ProcessInputBuffer(samples, channels);
        return samples;
    }

    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    FakeHeadset headset;
    InputProcessing processing{waves, headset};
    InputProcessingSettings settings;
};

// The same arithmetic once more in 64 bits, so that nothing overflows.
class Model {
  public:
    Model(const InputProcessing& processing, bool equalize)
        : processing_(processing), equalize_(equalize) {}

    std::int16_t Next(std::size_t channel, std::int16_t x) {
        const std::int64_t y = x - (dc_[channel] >> 10);
        dc_[channel] += y;
        std::int64_t v = equalize_ ? 4 * y : y;
        for (std::size_t stage = 0; equalize_ && channel == 0 && stage < 3; ++stage)
            v = Stage(processing_.Coefficients(stage), w_[stage][0], w_[stage][1], v);
        const std::int64_t out = (processing_.GainFactor() * v) >> (equalize_ ? 10 : 8);
        return static_cast<std::int16_t>(std::clamp<std::int64_t>(out, -32767, 32767));
    }

  private:
    static std::int64_t Product(std::int32_t coefficient, std::int64_t state) {
        const float product = static_cast<float>(coefficient) * static_cast<float>(state);
        return static_cast<std::int64_t>(std::trunc(std::ldexp(product, -28)));
    }

    static std::int64_t Stage(const std::array<std::int32_t, 5>& c, std::int64_t& w1,
                              std::int64_t& w2, std::int64_t v) {
        const std::int64_t w0 = v + Product(c[1], w1) + Product(c[2], w2);
        const std::int64_t out = Product(c[4], w0) + Product(c[3], w1) + Product(c[0], w2);
        w2 = w1;
        w1 = w0;
        return out;
    }

    const InputProcessing& processing_;
    bool equalize_;
    std::int64_t dc_[2] = {};
    std::int64_t w_[3][2] = {};
};

TEST_F(InputProcessingTest, EqualsTheModelBitForBit) {
    for (const unsigned channels : {1U, 2U}) {
        for (const bool equalize : {false, true}) {
            for (const std::int32_t gain : {0, 9, 40}) {  // with the last one most of it clips
                Load(equalize ? u"mic_int" : u"");
                processing.ClearState();
                processing.SetInputGain(gain);
                Model model(processing, equalize);
                const Samples in = ExtremeNoise(7, 30000);
                const Samples out = Processed(in, channels);
                for (std::size_t at = 0; at < in.size(); ++at)
                    ASSERT_EQ(out[at], model.Next(at % channels, in[at]))
                        << channels << " channels, equaliser " << equalize << ", gain " << gain
                        << ", sample " << at;
            }
        }
    }
}

TEST_F(InputProcessingTest, TurnsGainIntoAFactorAndClampsIt) {
    Load(u"");
    const struct {
        std::int32_t delta, db, factor;
    } steps[] = {{1, 1, 287},  // 10^(1/20) * 256 = 287.2
                 {19, 20, 2560},
                 {20, 40, 25600},
                 {1, 40, 25600},
                 {-41, 0, 256}};
    for (const auto& step : steps) {
        processing.SetInputGain(step.delta);
        EXPECT_EQ(processing.InputGainDb(), step.db);
        EXPECT_EQ(processing.GainFactor(), step.factor);
    }
    // A set's offset counts only while the equaliser is on.
    settings.sets[0].gainOffset = settings.sets[2].gainOffset = 20;
    settings.sets[2].on = 0;
    Load(u"mic_int");
    EXPECT_EQ(processing.GainFactor(), 2560);
    EXPECT_TRUE(processing.SelectByName(u"mic"));
    EXPECT_EQ(processing.GainFactor(), 256);
}

TEST_F(InputProcessingTest, ComputesACutAtAQuarterOfTheSampleRate) {
    // K = 1 there, so by hand: Q 1 and V = 1/boost, which the denominator carries: N = 1/(2 + 1/V),
    // b2 = N, a2 = (2 - 1/V) N, b0 = 1 + (1 - 1/V) N, a1 = b1 = 0. Scaled by 2^28.
    settings.sets[1].bands[0].gain = -60;
    Load(u"mic_ext");
    const double boost = std::pow(10.0, 0.3);
    const double n = 1 / (2 + boost);
    const double expected[] = {n, 0, -(2 - boost) * n, 0, 1 + (1 - boost) * n};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(processing.Coefficients(0)[i], expected[i] * 268435456.0, 2) << i;
    EXPECT_EQ(processing.Coefficients(1), kPassesThrough);
}

TEST_F(InputProcessingTest, ChoosesTheSetAtStartUpByItsName) {
    settings.initial.on = 1;
    const auto on = [&](const Text& name) {
        Load(name);
        return processing.EqualizerOn();
    };
    EXPECT_TRUE(on(u"mic"));
    EXPECT_FALSE(on(u"unknown"));
    settings.sets[1].name.clear();
    EXPECT_FALSE(on(u"mic")) << "sets behind a nameless one are not looked at";
}

TEST_F(InputProcessingTest, ChangesToTheTwinSetByTheHeadset) {
    const auto chosen = [&](const Text& name, int state) {
        settings.sets[3] = Set(name, Band(500, 20, 7));
        Load(name);
        headset.state = state;
        processing.ChooseEqualizerForHeadset();
        return processing.CurrentSetName();
    };
    EXPECT_EQ(chosen(u"mic_int", -1), u"mic_int") << "unknown";
    EXPECT_EQ(chosen(u"mic_int", 3), u"mic_ext");
    EXPECT_NEAR(processing.Coefficients(0)[4], 357490000, 10000);  // the boost at 11025 Hz
    EXPECT_EQ(chosen(u"mic_ext", 0), u"mic_int");
    for (const Text& unpaired : {Text(u"mic"), Text(u"_int"), Text(u"mic_INT"), Text(u"other_int")})
        EXPECT_EQ(chosen(unpaired, 1), unpaired);
    settings.alternativeHeadsetKey = true;
    headset.alternative = 0;
    EXPECT_EQ(chosen(u"mic_ext", 1), u"mic_int");
}

TEST_F(InputProcessingTest, SetsTheOutputVolumeOfBothSides) {
    Load(u"");
    const struct {
        std::int32_t delta;
        std::uint32_t step;
        std::uint16_t volume;
    } steps[] = {{-6, 14, 32845},  // -6 dB of 65535, cut off
                 {100, 20, 65535},
                 {-100, 0, 6553}};
    for (const auto& one : steps) {
        processing.SetOutputVolume(one.delta);
        EXPECT_EQ(processing.OutputStep(), one.step);
        EXPECT_EQ(waves.volumeLeft, one.volume);
        EXPECT_EQ(waves.volumeRight, one.volume);
    }
    settings.volumeControl = false;
    Load(u"");
    processing.SetOutputVolume(-1);
    EXPECT_EQ(processing.OutputStep(), 20U);
}

TEST_F(InputProcessingTest, DoesToASineWhatTheResponseOfItsBandsSays) {
    const EqualizerSet middle = Set(u"", {}, Band(1000, -45, 10));
    // A single bell reaches its gain at its centre and nothing at both ends.
    for (const auto& [frequency, db] : {std::pair{1000.0, -4.5}, {1.0, 0.0}, {22049.0, 0.0}})
        EXPECT_NEAR(EqualizerResponseDb(middle, 44100, frequency), db, 0.001);

    Load(u"mic_int");
    for (const double frequency : {150.0, 640.0, 1000.0, 3000.0, 6000.0, 15000.0}) {
        processing.ClearState();
        const Samples sine = Processed(Tone(frequency, 44100, 8000, 44100), 1);
        double power = 0;  // of the second half, when the filter has settled
        for (std::size_t i = sine.size() / 2; i < sine.size(); ++i)
            power += static_cast<double>(sine[i]) * sine[i];
        const double gained =
            10 * std::log10(power / (static_cast<double>(sine.size()) / 2) / (8000.0 * 8000 / 2));
        EXPECT_NEAR(gained, EqualizerResponseDb(settings.sets[0], 44100, frequency), 0.05)
            << frequency;
    }
}

TEST_F(InputProcessingTest, IsFlatWhereNothingFilters) {
    EqualizerSet off = Set(u"", Band(1000, 60, 10));
    off.on = 0;
    EqualizerSet disabled = Set(u"", Band(1000, 60, 10));
    disabled.bands[0].enabled = 0;
    // Bands that no filter can realise pass their sound through.
    const EqualizerSet bad = Set(u"bad", Band(0, 60, 10), Band(22050, 60, 10), Band(1000, 60, 0));
    for (const EqualizerSet& set : {off, disabled, bad})
        EXPECT_EQ(EqualizerResponseDb(set, 44100, 1000), 0);
    settings.sets[0] = bad;
    Load(u"bad");
    for (std::size_t band = 0; band < 3; ++band)
        EXPECT_EQ(processing.Coefficients(band), kPassesThrough);
}

}  // namespace
}  // namespace orma::test
