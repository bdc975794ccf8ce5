#include "platform/openssl/openssl_keyed_hash.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

namespace orma {

bool OpensslKeyedHash::HmacMd5(ByteSpan key, ByteSpan text, std::array<std::uint8_t, 16>& digest) {
    unsigned size = static_cast<unsigned>(digest.size());
    return ::HMAC(::EVP_md5(), key.data(), static_cast<int>(key.size()), text.data(), text.size(),
                  digest.data(), &size) != nullptr;
}

}  // namespace orma
