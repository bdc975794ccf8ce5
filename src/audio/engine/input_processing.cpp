#include "audio/engine/input_processing.h"

#include <algorithm>
#include <cmath>

#include "audio/engine/truncate.h"
#include "base/trace.h"

namespace orma {
namespace {

constexpr std::int32_t kMaxGainDb = 40;
constexpr std::int32_t kMaxOutputStep = 20;
constexpr float kCoefficientScale = 1.0F / static_cast<float>(kUnityCoefficient);

std::int32_t Product(std::int32_t coefficient, std::int32_t value) {
    return Truncate(static_cast<float>(coefficient) * static_cast<float>(value) *
                    kCoefficientScale);
}

// The sum wraps as 32-bit registers do.
std::int32_t Sum(std::int32_t a, std::int32_t b, std::int32_t c) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b) +
                                     static_cast<std::uint32_t>(c));
}

std::int16_t Clip(std::int64_t sample) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(sample, -32767, 32767));
}

}  // namespace

InputProcessing::InputProcessing(WaveSystem& waves, HeadsetProbe& headset)
    : waves_(waves), headset_(headset) {
    coefficients_.fill(kPassThrough);
}

void InputProcessing::Load(const InputProcessingSettings& settings, std::uint32_t sampleRate) {
    sets_ = settings.sets;
    active_ = settings.initial;
    currentSetName_ = settings.currentSetName;
    gainDb_ = std::clamp(settings.inputGainDb, 0, kMaxGainDb);
    outputStep_ = std::min(settings.outputStep, static_cast<std::uint32_t>(kMaxOutputStep));
    volumeControl_ = settings.volumeControl;
    alternativeHeadsetKey_ = settings.alternativeHeadsetKey;
    sampleRate_ = sampleRate;

    // The search ends at the first set without a name.
    bool chosen = false;
    for (std::size_t index = 0; !chosen && index < sets_.size(); ++index) {
        if (sets_[index].name.empty()) break;
        chosen = sets_[index].name == currentSetName_;
        if (chosen) SelectEqualizerSet(index);
    }
    if (!chosen) active_.on = 0;
    ComputeAllBands();
}

void InputProcessing::SetSampleRate(std::uint32_t sampleRate) {
    sampleRate_ = sampleRate;
    ComputeAllBands();
}

void InputProcessing::SetInputGain(std::int32_t delta) {
    Trace("Gaind=%d", delta);
    gainDb_ = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(std::int64_t{gainDb_} + delta, 0, kMaxGainDb));
    ComputeGainFactor();
}

void InputProcessing::SetOutputVolume(std::int32_t delta) {
    if (!volumeControl_) return;
    Trace("Vold=%d", delta);
    const auto step = static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(std::int64_t{outputStep_} + delta, 0, kMaxOutputStep));
    const double db = static_cast<double>(step) - kMaxOutputStep;
    const auto linear = static_cast<std::uint16_t>(
        std::min<std::int32_t>(Truncate(std::pow(10.0, db / 20) * 65535), 65535));
    if (waves_.SetOutputVolume(linear, linear) == WaveResult::kOk) outputStep_ = step;
}

void InputProcessing::SelectEqualizerSet(std::size_t index) {
    if (index >= sets_.size()) return;
    active_ = sets_[index];
    currentSetName_ = active_.name;
}

bool InputProcessing::SelectByName(const Text& name) {
    const auto found = std::find_if(sets_.begin(), sets_.end(),
                                    [&](const EqualizerSet& set) { return set.name == name; });
    if (name.empty() || found == sets_.end()) return false;
    SelectEqualizerSet(static_cast<std::size_t>(found - sets_.begin()));
    ComputeAllBands();
    return true;
}

void InputProcessing::SwitchEqualizerOff() {
    active_.on = 0;
    currentSetName_.clear();
    ComputeAllBands();
}

void InputProcessing::ComputeBand(std::size_t band) {
    ComputeGainFactor();
    if (active_.on == 0 || band >= coefficients_.size()) return;
    const EqualizerBand& settings = active_.bands[band];
    coefficients_[band] = kPassThrough;
    if (settings.enabled == 0) return;
    const std::optional<BellFilter> bell = DesignBell(settings, sampleRate_);
    if (!bell) {
        Trace("band %zu passed through: %u Hz, Q %u", band, unsigned{settings.frequency},
              unsigned{settings.q});
        return;
    }
    coefficients_[band] = FixedPoint(*bell);
    // The trace calls the feed-forward terms a and the negated feedback terms b.
    Trace("a0=%f,a1=%f,a2=%f,b1=%f,b2=%f", bell->b0, bell->b1, bell->b2, bell->minusA1,
          bell->minusA2);
}

void InputProcessing::ChooseEqualizerForHeadset() {
    if (currentSetName_.size() < 5) return;
    const int headset = GetHeadsetState();
    if (headset == -1) return;
    const bool paired = currentSetName_.ends_with(u"_ext") || currentSetName_.ends_with(u"_int");
    if (!paired) return;
    const Text twin =
        currentSetName_.substr(0, currentSetName_.size() - 4) + (headset != 0 ? u"_ext" : u"_int");
    // Without a twin the set in use stays.
    (void)SelectByName(twin);
}

int InputProcessing::GetHeadsetState() {
    return headset_.State(alternativeHeadsetKey_);
}

void InputProcessing::ClearState() {
    stages_ = {};
    dc_ = {};
}

void InputProcessing::ProcessInputBuffer(std::span<std::int16_t> samples, unsigned channels) {
    const bool equalize = EqualizerOn();
    for (std::size_t at = 0; at < samples.size(); ++at) {
        const std::size_t channel = channels == 2 ? at & 1 : 0;
        const std::int32_t y = samples[at] - (dc_[channel] >> 10);
        dc_[channel] += y;  // settles at 1024 times the mean: 26 bits
        if (!equalize) {
            samples[at] = Clip((std::int64_t{factor_} * y) >> 8);
            continue;
        }
        // Only the left (or only) channel is equalised, deliberately: the set corrects the one
        // microphone. The right one keeps pace through the same two more bits.
        std::int32_t value = 4 * y;
        if (channel == 0) value = Equalize(value);
        samples[at] = Clip((std::int64_t{factor_} * value) >> 10);
    }
}

void InputProcessing::ComputeGainFactor() {
    const double db = static_cast<double>(gainDb_) + (EqualizerOn() ? active_.gainOffset : 0);
    factor_ = Truncate(std::pow(10.0, db / 20) * 256);
}

void InputProcessing::ComputeAllBands() {
    for (std::size_t band = 0; band < coefficients_.size(); ++band)
        ComputeBand(band);
}

std::int32_t InputProcessing::Equalize(std::int32_t value) {
    for (std::size_t stage = 0; stage < stages_.size(); ++stage) {
        const std::array<std::int32_t, 5>& c = coefficients_[stage];
        StageState& w = stages_[stage];
        const std::int32_t w0 = Sum(value, Product(c[1], w.w1), Product(c[2], w.w2));
        value = Sum(Product(c[4], w0), Product(c[3], w.w1), Product(c[0], w.w2));
        w.w2 = w.w1;
        w.w1 = w0;
    }
    return value;
}

}  // namespace orma
