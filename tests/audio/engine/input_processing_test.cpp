#include "audio/engine/input_processing.h"

#include <cmath>

#include <gtest/gtest.h>

#include "audio/engine/fake_headset.h"
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

    std::int16_t Next(int channel, std::int16_t x) {
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
            Load(equalize ? u"mic_int" : u"");
            processing.ClearState();
            processing.SetInputGain(-40);
            processing.SetInputGain(9);
            Model model(processing, equalize);
            const Samples in = ExtremeNoise(7, 30000);
            const Samples out = Processed(in, channels);
            for (std::size_t at = 0; at < in.size(); ++at) {
                const int channel = channels == 2 ? static_cast<int>(at % 2) : 0;
                ASSERT_EQ(out[at], model.Next(channel, in[at]))
                    << channels << " channels, equaliser " << equalize << ", sample " << at;
            }
        }
    }
}

TEST_F(InputProcessingTest, ClipsLoudSoundAtBothEndsAndPassesSoftSoundAtUnityGain) {
    Load(u"mic_int");  // the products exceed 32 bits here
    processing.SetInputGain(100);
    EXPECT_EQ(Processed({32767, -32768, -32768, 32767}, 1),
              (Samples{32767, -32767, -32767, 32767}));
    Load(u"");
    EXPECT_EQ(Processed({-32768}, 1), Samples{-32767});
    processing.ClearState();
    // Pairs that cancel keep the DC accumulator below one step.
    const Samples alternating = {500, -500, 1000, -1000, 300, -300, 0};
    EXPECT_EQ(Processed(alternating, 1), alternating);
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

TEST_F(InputProcessingTest, ComputesABoostAndACutAtAQuarterOfTheSampleRate) {
    // K = 1 there, so by hand: boost of 6 dB, Q 1: N = 1/3, a2 = 1/3, b0 = 1 + (V - 1)/3,
    // b2 = (2 - V)/3, a1 = b1 = 0. Scaled by 2^28.
    Load(u"mic_ext");
    const double boost = std::pow(10.0, 0.3);
    const double scale = 268435456.0;
    const auto expectBand = [&](double b2, double minusA2, double b0) {
        const auto& c = processing.Coefficients(0);
        EXPECT_NEAR(c[0], b2 * scale, 2);
        EXPECT_NEAR(c[1], 0, 1);
        EXPECT_NEAR(c[2], minusA2 * scale, 2);
        EXPECT_NEAR(c[3], 0, 1);
        EXPECT_NEAR(c[4], b0 * scale, 2);
    };
    expectBand((2 - boost) / 3, -1.0 / 3, 1 + (boost - 1) / 3);
    // The cut's denominator carries 1/V: N = 1/(2 + 1/V), and b2 = N.
    settings.sets[1].bands[0].gain = -60;
    Load(u"mic_ext");
    const double n = 1 / (2 + boost);
    expectBand(n, -(2 - boost) * n, 1 + (1 - boost) * n);
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
    waves.volumeResult = WaveResult::kFailed;
    processing.SetOutputVolume(3);
    EXPECT_EQ(processing.OutputStep(), 0U);
    settings.volumeControl = false;
    Load(u"");
    processing.SetOutputVolume(-1);
    EXPECT_EQ(processing.OutputStep(), 20U);
}

TEST_F(InputProcessingTest, DoesToASineWhatTheResponseOfItsBandsSays) {
    const EqualizerSet middle = Set(u"", {}, Band(1000, -45, 10));
    // A single bell reaches its gain at its centre and nothing at both ends.
    EXPECT_NEAR(EqualizerResponseDb(middle, 44100, 1000), -4.5, 0.001);
    EXPECT_NEAR(EqualizerResponseDb(middle, 44100, 1), 0, 0.001);
    EXPECT_NEAR(EqualizerResponseDb(middle, 44100, 22049), 0, 0.001);
    EXPECT_GT(EqualizerResponseDb(Set(u"", Band(6000, 60, 20)), 44100, 6000), 5.99);

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
    EqualizerBand disabled = Band(1000, 60, 10);
    disabled.enabled = 0;
    for (const EqualizerSet& set : {off, Set(u"", disabled), Set(u"", Band(0, 60, 10)),
                                    Set(u"", Band(1000, 60, 0)), Set(u"", Band(22050, 60, 10))})
        EXPECT_EQ(EqualizerResponseDb(set, 44100, 1000), 0);
    // A band that no filter can realise passes its sound through.
    settings.sets[0] = Set(u"bad", Band(0, 60, 10), Band(22050, 60, 10), Band(1000, 60, 0));
    Load(u"bad");
    for (std::size_t band = 0; band < 3; ++band)
        EXPECT_EQ(processing.Coefficients(band), kPassesThrough);
}

}  // namespace
}  // namespace orma::test
