#include "stream/jstream.h"

namespace orma {

void JStream::SetPosition(std::int32_t) {}

std::uint32_t JStream::GetPosition() {
    return 0;
}

void JStream::Skip(std::int32_t) {}

}  // namespace orma
