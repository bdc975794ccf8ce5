#include "platform/openssl/openssl_keyed_hash.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

namespace orma {

bool OpensslKeyedHash::HmacMd5(ByteSpan key, ByteSpan text, std::array<std::uint8_t, 16>& digest) {
    // An empty text has no address; the library wants one.
    static constexpr std::uint8_t kNothing = 0;
    if (key.empty()) key = {&kNothing, 0};
    if (text.empty()) text = {&kNothing, 0};
    unsigned size = static_cast<unsigned>(digest.size());
    return ::HMAC(::EVP_md5(), key.data(), static_cast<int>(key.size()), text.data(), text.size(),
                  digest.data(), &size) != nullptr;
}

}  // namespace orma
