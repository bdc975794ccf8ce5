#include "audio/files/conversion_queue.h"

namespace orma {

void ConversionQueue::Start(std::uint32_t fileRate, std::uint32_t outputRate,
                            unsigned outputChannels, std::size_t step, std::size_t refill,
                            std::size_t least) {
    fileRate_ = fileRate;
    outputRate_ = outputRate;
    channels_ = outputChannels;
    step_ = step;
    least_ = least;
    Clear();
    // The converter may need one sample more at another phase than at the first.
    held_.reserve((std::max(converter_.InputNeeded(step) + 1, least) + refill) * channels_);
    converted_.resize(step * channels_);
}

void ConversionQueue::Clear() {
    held_.clear();
    converter_.Start(fileRate_, outputRate_);
}

void ConversionQueue::Append(std::span<const std::int16_t> samples, unsigned channels) {
    if (channels == channels_) {
        held_.insert(held_.end(), samples.begin(), samples.end());
        return;
    }
    for (std::size_t i = 0; i < samples.size(); i += channels)
        held_.insert(held_.end(), channels_, samples[i]);
}

void ConversionQueue::AppendSilence(std::size_t count) {
    held_.insert(held_.end(), count * channels_, 0);
}

}  // namespace orma
