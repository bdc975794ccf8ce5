#include "platform/openssl/openssl_tls.h"

#include <algorithm>
#include <chrono>

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace orma {
namespace {

using End = NetworkResult::End;
using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kRecordBytes = 16384;  // the largest piece that TLS protects at once

struct Free {
    void operator()(SSL_CTX* context) const { ::SSL_CTX_free(context); }
    void operator()(SSL* ssl) const { ::SSL_free(ssl); }
};
using Context = std::unique_ptr<SSL_CTX, Free>;
using Ssl = std::unique_ptr<SSL, Free>;

unsigned MillisecondsUntil(SteadyClock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
    return static_cast<unsigned>(std::max<std::int64_t>(left.count(), 0));
}

/// TLS over a connection: the library works on two buffers in memory, and this carries their bytes
/// to and from the connection, so that its waiting and its Patience hold here as well.
class TlsConnection : public TcpConnection {
  public:
    /// Takes a session that has no transport yet.
    TlsConnection(std::unique_ptr<TcpConnection> plain, Ssl ssl)
        : plain_(std::move(plain)),
          ssl_(std::move(ssl)),
          received_(::BIO_new(::BIO_s_mem())),
          toSend_(::BIO_new(::BIO_s_mem())) {
        ::SSL_set_bio(ssl_.get(), received_, toSend_);  // which then owns both
    }

    ~TlsConnection() override {
        if (!healthy_) return;
        ::ERR_clear_error();
        ::SSL_shutdown(ssl_.get());
        (void)Flush();
    }
    TlsConnection(const TlsConnection&) = delete;
    TlsConnection& operator=(const TlsConnection&) = delete;

    NetworkResult ShakeHands(unsigned milliseconds) {
        return Drive(milliseconds, [&] { return ::SSL_connect(ssl_.get()); });
    }

    NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got,
                          unsigned milliseconds) override {
        got = 0;
        return Drive(milliseconds,
                     [&] { return ::SSL_read_ex(ssl_.get(), into.data(), into.size(), &got); });
    }

    NetworkResult Send(ByteSpan bytes) override {
        while (!bytes.empty()) {
            const ByteSpan piece = bytes.first(std::min(bytes.size(), kRecordBytes));
            std::size_t taken = 0;
            const NetworkResult sent = Drive(
                0, [&] { return ::SSL_write_ex(ssl_.get(), piece.data(), piece.size(), &taken); });
            if (!sent.Ok()) return sent;
            bytes = bytes.subspan(taken);
        }
        return {};
    }

    [[nodiscard]] long VerifyResult() const { return ::SSL_get_verify_result(ssl_.get()); }

  private:
    /// Repeats `step` of the library, carrying bytes both ways, until it is done.
    template <class Step>
    NetworkResult Drive(unsigned milliseconds, Step step) {
        const auto deadline = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
        healthy_ = false;  // unless this ends well
        while (true) {
            ::ERR_clear_error();
            const int result = step();
            const int error = ::SSL_get_error(ssl_.get(), result);
            const NetworkResult flushed = Flush();  // an alert, too, must get out
            if (!flushed.Ok()) return flushed;
            healthy_ = result > 0;
            if (result > 0) return {};
            if (error == SSL_ERROR_ZERO_RETURN) return {End::kClosed};
            if (error != SSL_ERROR_WANT_READ) return {End::kFailed};
            const NetworkResult more = Fetch(MillisecondsUntil(deadline));
            if (!more.Ok()) return more;
        }
    }

    NetworkResult Fetch(unsigned milliseconds) {
        std::array<std::uint8_t, 4096> buffer;
        std::size_t got = 0;
        const NetworkResult result = plain_->Receive(buffer, got, milliseconds);
        if (result.Ok() &&
            ::BIO_write(received_, buffer.data(), static_cast<int>(got)) != static_cast<int>(got))
            return {End::kFailed};
        return result;
    }

    NetworkResult Flush() {
        char* bytes = nullptr;
        const long count = ::BIO_get_mem_data(toSend_, &bytes);
        if (count <= 0) return {};
        const NetworkResult sent = plain_->Send(AsBytes({bytes, static_cast<std::size_t>(count)}));
        (void)BIO_reset(toSend_);
        return sent;
    }

    std::unique_ptr<TcpConnection> plain_;
    Ssl ssl_;
    BIO* received_;
    BIO* toSend_;
    bool healthy_ = false;
};

bool TrustsStore(SSL_CTX* context, const Text& caFile) {
    if (caFile.empty()) return ::SSL_CTX_set_default_verify_paths(context) == 1;
    return ::SSL_CTX_load_verify_file(context, ToUtf8(caFile).c_str()) == 1;
}

/// A session that accepts nobody but the host.
Ssl NewSession(SSL_CTX* context, const std::string& host) {
    Ssl ssl(::SSL_new(context));
    if (!ssl) return ssl;
    ::SSL_set_hostflags(ssl.get(), X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    // An address is no name: it is neither announced nor looked for among the names.
    const bool isAddress =
        ::X509_VERIFY_PARAM_set1_ip_asc(::SSL_get0_param(ssl.get()), host.c_str()) == 1;
    const bool ready = isAddress || (::SSL_set1_host(ssl.get(), host.c_str()) == 1 &&
                                     ::SSL_set_tlsext_host_name(ssl.get(), host.c_str()) == 1);
    return ready ? std::move(ssl) : Ssl();
}

TlsFailure FailureOf(End end, long verified) {
    if (end == End::kGivenUp) return TlsFailure::kGivenUp;
    switch (verified) {
        case X509_V_OK:
            return TlsFailure::kHandshake;
        case X509_V_ERR_HOSTNAME_MISMATCH:
        case X509_V_ERR_IP_ADDRESS_MISMATCH:
            return TlsFailure::kWrongHost;
        case X509_V_ERR_CERT_HAS_EXPIRED:
        case X509_V_ERR_CERT_NOT_YET_VALID:
            return TlsFailure::kExpired;
        default:
            return TlsFailure::kUntrusted;
    }
}

}  // namespace

TlsFailure OpensslTlsConnections::Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& peer,
                                         unsigned milliseconds,
                                         std::unique_ptr<TcpConnection>& secured) {
    ::ERR_clear_error();
    const Context context(::SSL_CTX_new(::TLS_client_method()));
    if (!context) return TlsFailure::kHandshake;
    ::SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
    ::SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    ::SSL_CTX_set_options(context.get(), SSL_OP_NO_RENEGOTIATION);
    if (!TrustsStore(context.get(), peer.caFile)) return TlsFailure::kTrustStore;
    Ssl ssl = NewSession(context.get(), peer.host);
    if (!ssl) return TlsFailure::kHandshake;

    auto connection = std::make_unique<TlsConnection>(std::move(plain), std::move(ssl));
    const NetworkResult shaken = connection->ShakeHands(milliseconds);
    if (!shaken.Ok()) return FailureOf(shaken.end, connection->VerifyResult());
    secured = std::move(connection);
    return TlsFailure::kNone;
}

}  // namespace orma
