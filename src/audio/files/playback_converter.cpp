#include "audio/files/playback_converter.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "audio/files/interpolation_table.h"

namespace orma {
namespace {

constexpr int kWeightBits = 16;

bool IsKnown(std::uint32_t inputRate, std::uint32_t outputRate) {
    const bool knownOutput = outputRate == 44100 || outputRate == 48000;
    const bool knownInput =
        inputRate == 44100 || inputRate == 48000 || inputRate == 88200 || inputRate == 96000;
    return knownInput && knownOutput;
}

}  // namespace

void PlaybackConverter::Start(std::uint32_t inputRate, std::uint32_t outputRate) {
    phase_ = 0;
    if (inputRate == outputRate || !IsKnown(inputRate, outputRate)) {
        inputStep_ = outputStep_ = 1;
        taps_ = 0;
        return;
    }
    const std::uint32_t divisor = std::gcd(inputRate, outputRate);
    const std::uint32_t inputStep = inputRate / divisor;
    const std::uint32_t outputStep = outputRate / divisor;
    if (inputStep == inputStep_ && outputStep == outputStep_) return;
    inputStep_ = inputStep;
    outputStep_ = outputStep;
    const std::uint32_t longer = std::max(inputStep, outputStep);
    taps_ = 2 * ((InterpolationTable::kTaps / 2 * longer + outputStep - 1) / outputStep);
    BuildRows();
}

void PlaybackConverter::BuildRows() {
    const double stretch = std::max(1.0, static_cast<double>(inputStep_) / outputStep_);
    const auto centre = static_cast<double>(taps_ / 2 - 1);
    for (std::uint32_t phase = 0; phase < outputStep_; ++phase) {
        const double place = centre + static_cast<double>(phase) / outputStep_;
        std::array<double, kMaxTaps> weights{};
        for (std::uint32_t tap = 0; tap < taps_; ++tap) {
            weights[tap] = InterpolationKernel((tap - place) / stretch);
        }
        const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
        // Rounding moves the sum by a few units; the largest weight, near the place, takes them.
        std::int32_t left = 1 << kWeightBits;
        for (std::uint32_t tap = 0; tap < taps_; ++tap) {
            const double weight = weights[tap] / sum * (1 << kWeightBits);
            rows_[phase][tap] = static_cast<std::int32_t>(std::lround(weight));
            left -= rows_[phase][tap];
        }
        rows_[phase][static_cast<std::size_t>(std::lround(place))] += left;
    }
}

std::size_t PlaybackConverter::InputNeeded(std::size_t outputs) const {
    if (outputs == 0 || Copies()) return outputs;
    return (phase_ + (outputs - 1) * std::size_t{inputStep_}) / outputStep_ + taps_;
}

std::size_t PlaybackConverter::Convert(std::span<const std::int16_t> in, unsigned channels,
                                       std::span<std::int16_t> out) {
    if (Copies()) {
        std::ranges::copy(in.first(out.size()), out.begin());
        return out.size() / channels;
    }
    std::size_t consumed = 0;
    for (std::size_t done = 0; done + channels <= out.size(); done += channels) {
        const std::array<std::int32_t, kMaxTaps>& row = rows_[phase_];
        for (unsigned channel = 0; channel < channels; ++channel) {
            const std::int16_t* x = in.data() + consumed * channels + channel;
            std::int64_t sum = 1 << (kWeightBits - 1);
            for (std::uint32_t tap = 0; tap < taps_; ++tap) {
                sum += std::int64_t{row[tap]} * x[std::size_t{tap} * channels];
            }
            const std::int64_t sample = std::clamp<std::int64_t>(sum >> kWeightBits, -32768, 32767);
            out[done + channel] = static_cast<std::int16_t>(sample);
        }
        phase_ += inputStep_;
        consumed += phase_ / outputStep_;
        phase_ %= outputStep_;
    }
    return consumed;
}

}  // namespace orma
