#pragma once

#include <array>
#include <cstdint>

#include "base/bytes.h"

namespace orma {

/// Message authentication codes. Any thread.
class KeyedHash {
  public:
    virtual ~KeyedHash() = default;

    /// HMAC (RFC 2104) over MD5 (RFC 1321). False where the system refuses MD5.
    [[nodiscard]] virtual bool HmacMd5(ByteSpan key, ByteSpan text,
                                       std::array<std::uint8_t, 16>& digest) = 0;
};

}  // namespace orma
