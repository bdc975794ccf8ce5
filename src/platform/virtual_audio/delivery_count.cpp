#include "platform/virtual_audio/delivery_count.h"

#include <array>

#include "base/bytes.h"
#include "base/trace.h"

namespace orma {

DeliveryCount::DeliveryCount(const Text& path) {
    if (path.empty()) return;
    file_.reset(std::fopen(ToUtf8(path).c_str(), "wb"));
    if (file_ == nullptr) Trace("virtual audio: no count file \"%s\"", ToUtf8(path).c_str());
}

void DeliveryCount::Set(std::uint64_t frames) {
    if (file_ == nullptr) return;
    std::array<std::uint8_t, 8> bytes{};
    StoreLe(bytes.data(), frames);
    std::rewind(file_.get());
    (void)std::fwrite(bytes.data(), 1, bytes.size(), file_.get());
    (void)std::fflush(file_.get());
}

}  // namespace orma
