#include "publish/publish_patience.h"

namespace orma {

bool PublishPatience::GoOn() {
    if (!graceEnds_) {
        if (!progress_.IsCancelled()) return true;
        if (!transfer_) return false;
        graceEnds_ = clock_.Ticks() + kGraceMs;
    }
    return static_cast<std::int32_t>(*graceEnds_ - clock_.Ticks()) > 0;
}

bool PublishPatience::Wait(std::uint32_t milliseconds) {
    constexpr std::uint32_t kSliceMs = 50;
    const std::uint32_t start = clock_.Ticks();
    while (clock_.Ticks() - start < milliseconds) {
        if (!GoOn()) return false;
        clock_.Sleep(kSliceMs);
    }
    return true;
}

}  // namespace orma
