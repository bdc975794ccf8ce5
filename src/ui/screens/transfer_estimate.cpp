#include "ui/screens/transfer_estimate.h"

#include <cmath>

namespace orma {

std::optional<std::uint32_t> TransferEstimate::SecondsLeft(std::uint32_t now, std::uint64_t done,
                                                           std::uint64_t total) {
    Measure(now, done);
    if (done >= total) return std::nullopt;
    if (answeredAt_ && now - *answeredAt_ < kStandsMs) return answer_;
    answeredAt_ = now;
    answer_ = Estimate(total - done);
    return answer_;
}

void TransferEstimate::Measure(std::uint32_t now, std::uint64_t done) {
    if (!started_) started_ = now;
    if (!measuring_) {
        measuring_ = now - *started_ >= kLeftOutMs;
        measuredAt_ = now;
        measuredBytes_ = done;
        return;
    }
    const std::uint32_t past = now - measuredAt_;
    if (past < kSliceMs) return;
    const double kept = std::exp(-static_cast<double>(past) / kMemoryMs);
    const std::uint64_t sent = done > measuredBytes_ ? done - measuredBytes_ : 0;
    bytes_ = bytes_ * kept + static_cast<double>(sent);
    milliseconds_ = milliseconds_ * kept + past;
    measuredAt_ = now;
    measuredBytes_ = done;
}

std::optional<std::uint32_t> TransferEstimate::Estimate(std::uint64_t left) const {
    if (milliseconds_ < kEnoughMs || bytes_ <= 0) return std::nullopt;
    const double seconds = static_cast<double>(left) * milliseconds_ / bytes_ / 1000;
    if (seconds > kMostSeconds) return std::nullopt;
    return static_cast<std::uint32_t>(std::ceil(seconds));
}

}  // namespace orma
