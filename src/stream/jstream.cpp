#include "stream/jstream.h"

#include <array>

#include "base/bytes.h"

namespace orma {

void JStream::SetPosition(std::int32_t) {}

std::uint32_t JStream::GetPosition() {
    return 0;
}

void JStream::Skip(std::int32_t) {}

void WriteNumberAt(JStream& stream, std::uint32_t offset, std::uint32_t value) {
    std::array<std::uint8_t, sizeof value> bytes{};
    StoreLe(bytes.data(), value);
    stream.SetPosition(static_cast<std::int32_t>(offset));
    stream.Write(bytes.data(), sizeof value);
}

}  // namespace orma
