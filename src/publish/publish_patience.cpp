#include "publish/publish_patience.h"

namespace orma {

bool PublishPatience::GoOn() {
    if (!graceEnds_) return !progress_.IsCancelled();
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
