#include "audio/engine/load_meter.h"

#include <algorithm>
#include <numeric>

#include "base/trace.h"

namespace orma {

void LoadMeter::Clear() {
    history_.fill(0);
    count_ = 0;
    peak_ = 0;
}

void LoadMeter::Note(std::uint32_t milliseconds, std::uint32_t periodsPerSecond) {
    if (count_ != 0) {
        std::rotate(history_.begin(), history_.begin() + 1, history_.end());
        history_.back() = milliseconds;
        const std::uint64_t sum =
            std::accumulate(history_.begin(), history_.end(), std::uint64_t{});
        const auto average = static_cast<std::uint32_t>(sum / history_.size());
        if (average > peak_ && count_ > 2 * periodsPerSecond) peak_ = average;
    }
    if (count_ < log_.size()) log_[count_++] = milliseconds;
}

void LoadMeter::TraceLog() const {
    for (std::uint32_t index = 0; index < count_; ++index)
        Trace("pload[%u]=%u", index, log_[index]);
}

}  // namespace orma
