#pragma once

#include <memory>
#include <string>

#include <openssl/ssl.h>
#include <openssl/x509.h>

#include "platform/tcp_connection.h"

namespace orma::test {

struct FreeOpenssl {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    void operator()(SSL* ssl) const { SSL_free(ssl); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

/// A certificate and its key.
struct Identity {
    std::unique_ptr<X509, FreeOpenssl> certificate;
    std::unique_ptr<EVP_PKEY, FreeOpenssl> key;
};

/// An identity whose names are `subjectAltName` ("DNS:x", "IP:x"; empty: an authority), valid until
/// so many seconds from now, vouched for by `issuer` (null: by itself).
[[nodiscard]] Identity MakeIdentity(const std::string& subjectAltName, long seconds,
                                    const Identity* issuer);

/// The certificate as PEM text.
[[nodiscard]] std::string Pem(const Identity& identity);

/// The client's end of a connection to a server in this same thread, which sends back what it gets
/// and ends the connection politely after "end".
class TlsServer : public TcpConnection {
  public:
    explicit TlsServer(const Identity& identity);

    [[nodiscard]] NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got,
                                        unsigned milliseconds) override;
    [[nodiscard]] NetworkResult Send(ByteSpan bytes) override;

  private:
    std::unique_ptr<SSL_CTX, FreeOpenssl> context_;
    std::unique_ptr<SSL, FreeOpenssl> ssl_;
};

}  // namespace orma::test
