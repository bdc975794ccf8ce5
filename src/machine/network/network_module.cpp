#include "machine/network/network_entry.h"
#include "platform/curl/curl_ftp_clients.h"
#include "platform/openssl/openssl_keyed_hash.h"
#include "platform/openssl/openssl_tls.h"

namespace orma {
namespace {

/// A recording goes on through stalls of at least a minute; its queue holds two.
constexpr FtpLimits kLiveLimits{.connectMs = 90'000, .replyMs = 120'000, .stallMs = 120'000};

}  // namespace

__attribute__((visibility("default"))) void ORMA_NETWORK_ENTRY(NetworkAdapters& adapters) {
    adapters = {.ftp = std::make_unique<CurlFtpClients>(),
                .liveFtp = std::make_unique<CurlFtpClients>(kLiveLimits),
                .tls = std::make_unique<OpensslTlsConnections>(),
                .hash = std::make_unique<OpensslKeyedHash>()};
}

}  // namespace orma
