#include "audio/files/rate_converter.h"

#include <algorithm>

#include "audio/files/interpolation_table.h"
#include "audio/files/tap_sum.h"

namespace orma {
namespace {

constexpr std::uint32_t kHighestInterpolatedRate = 44100;

// Outputs per step; inputs are put together per channel for so many, on the stack.
constexpr std::size_t kStep = 288;

static_assert(RateConverter::kTaps == InterpolationTable::kTaps);

}  // namespace

bool RateConverter::Start(std::uint32_t inputRate) {
    const bool interpolates = inputRate > 0 && inputRate <= kHighestInterpolatedRate;
    if (!interpolates && inputRate != kOutputRate) return false;
    inputRate_ = inputRate;
    phase_ = 0;
    return true;
}

std::size_t RateConverter::InputNeeded(std::size_t outputs) const {
    if (outputs == 0 || inputRate_ == kOutputRate) return outputs;
    return (phase_ + (outputs - 1) * std::size_t{inputRate_}) / kOutputRate + kTaps;
}

std::size_t RateConverter::Convert(std::span<const std::int16_t> in, unsigned channels,
                                   std::span<std::int16_t> left, std::span<std::int16_t> right) {
    const std::array<std::span<std::int16_t>, 2> outputs = {left, right};
    if (inputRate_ == kOutputRate) {
        for (unsigned channel = 0; channel < channels; ++channel) {
            const std::int16_t* from = in.data() + channel;
            for (std::int16_t& sample : outputs[channel]) {
                sample = *from;
                from += channels;
            }
        }
        return left.size();
    }
    std::array<std::int16_t, kStep + kTaps> line;
    std::size_t consumed = 0;
    for (std::size_t done = 0; done < left.size();) {
        const std::size_t count = std::min(left.size() - done, kStep);
        const std::size_t needed = InputNeeded(count);
        std::uint32_t phase = phase_;
        std::size_t used = 0;
        for (unsigned channel = 0; channel < channels; ++channel) {
            const std::int16_t* from = in.data() + consumed * channels + channel;
            for (std::size_t i = 0; i < needed; ++i)
                line[i] = from[i * channels];
            phase = phase_;
            used = Run(line.data(), outputs[channel].subspan(done, count), phase);
        }
        phase_ = phase;
        consumed += used;
        done += count;
    }
    return consumed;
}

std::size_t RateConverter::Run(const std::int16_t* in, std::span<std::int16_t> out,
                               std::uint32_t& phase) const {
    constexpr std::uint32_t kPhaseStep = kOutputRate / InterpolationTable::kPhases;
    const InterpolationTable& table = InterpolationTable::Get();
    std::size_t consumed = 0;
    std::uint32_t p = phase;
    for (std::int16_t& sample : out) {
        const std::int32_t sum = TapSum(table.At((kOutputRate - p) / kPhaseStep), in + consumed);
        sample = static_cast<std::int16_t>(std::clamp(sum >> 11, -32768, 32767));
        p += inputRate_;
        if (p >= kOutputRate) {
            p -= kOutputRate;
            ++consumed;
        }
    }
    phase = p;
    return consumed;
}

}  // namespace orma
