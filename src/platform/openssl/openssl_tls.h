#pragma once

#include "platform/tls_connection.h"

namespace orma {

/// TLS through OpenSSL.
class OpensslTlsConnections : public TlsConnections {
  public:
    [[nodiscard]] TlsFailure Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& peer,
                                    unsigned milliseconds,
                                    std::unique_ptr<TcpConnection>& secured) override;
};

}  // namespace orma
