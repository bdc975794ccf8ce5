#pragma once

#include "platform/keyed_hash.h"

namespace orma {

/// OpenSSL's message authentication codes.
class OpensslKeyedHash : public KeyedHash {
  public:
    [[nodiscard]] bool HmacMd5(ByteSpan key, ByteSpan text,
                               std::array<std::uint8_t, 16>& digest) override;
};

}  // namespace orma
