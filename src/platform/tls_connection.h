#pragma once

#include <memory>
#include <string>

#include "base/text.h"
#include "platform/tcp_connection.h"

namespace orma {

/// Why there is no protected connection. None of these is ever answered with clear text.
enum class TlsFailure {
    kNone,
    kTrustStore,  // the file of trusted certificates cannot be read
    kWrongHost,   // a certificate for another host name
    kExpired,     // a certificate that is no longer, or not yet, valid
    kUntrusted,   // a certificate that nobody trusted vouches for
    kHandshake,   // the other side does not speak TLS, or not well enough
    kGivenUp,     // Patience was at its end
};

/// Whom to expect at the other end.
struct TlsPeer {
    std::string host;  // name or dotted address, as the account has it; the certificate must say so
    Text caFile;       // PEM file of the certificates to trust; empty: those of the system
};

/// Puts TLS (1.2 or newer) over TCP connections, as a client. One thread at a time.
class TlsConnections {
  public:
    virtual ~TlsConnections() = default;

    /// Shakes hands over `plain`, which it takes in any case, and verifies certificate and host
    /// name. On success `secured` carries the bytes, under the same contract. The whole handshake
    /// lasts at most `milliseconds`.
    [[nodiscard]] virtual TlsFailure Secure(std::unique_ptr<TcpConnection> plain,
                                            const TlsPeer& peer, unsigned milliseconds,
                                            std::unique_ptr<TcpConnection>& secured) = 0;
};

}  // namespace orma
