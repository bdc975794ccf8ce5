#include "platform/openssl/openssl_tls.h"

#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include "support/fake_tcp.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

using End = NetworkResult::End;

/// A certificate and its key. Its names are `names` ("DNS:x", "IP:x"; empty: an authority); it is
/// valid until so many seconds from now, vouched for by `issuer` (null: by itself).
struct Identity {
    Identity(const char* names, long seconds, const Identity* issuer) {
        X509* const x = certificate.get();
        X509_set_version(x, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(x), issuer == nullptr ? 1 : 2);
        X509_gmtime_adj(X509_getm_notBefore(x), -7200);
        X509_gmtime_adj(X509_getm_notAfter(x), seconds);
        X509_set_pubkey(x, key.get());
        const bool isAuthority = *names == '\0';
        const auto* name = reinterpret_cast<const unsigned char*>(isAuthority ? "CA" : "Server");
        X509_NAME_add_entry_by_txt(X509_get_subject_name(x), "CN", MBSTRING_ASC, name, -1, -1, 0);
        const Identity& voucher = issuer == nullptr ? *this : *issuer;
        X509_set_issuer_name(x, X509_get_subject_name(voucher.certificate.get()));
        X509_EXTENSION* const extension = X509V3_EXT_conf_nid(
            nullptr, nullptr, isAuthority ? NID_basic_constraints : NID_subject_alt_name,
            isAuthority ? "critical,CA:TRUE" : names);
        X509_add_ext(x, extension, -1);
        X509_EXTENSION_free(extension);
        EXPECT_GT(X509_sign(x, voucher.key.get(), EVP_sha256()), 0);
    }

    std::unique_ptr<X509, decltype(&X509_free)> certificate{X509_new(), X509_free};
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key{EVP_EC_gen("P-256"), EVP_PKEY_free};
};

/// The client's end of a connection to a server in this same thread, which sends back what it gets
/// and ends the connection politely after "end".
class TlsServer : public TcpConnection {
  public:
    explicit TlsServer(const Identity& identity) {
        SSL_use_certificate(ssl_.get(), identity.certificate.get());
        SSL_use_PrivateKey(ssl_.get(), identity.key.get());
        SSL_set_bio(ssl_.get(), BIO_new(BIO_s_mem()), BIO_new(BIO_s_mem()));
        SSL_set_accept_state(ssl_.get());
    }

    NetworkResult Send(ByteSpan bytes) override {
        BIO_write(SSL_get_rbio(ssl_.get()), bytes.data(), static_cast<int>(bytes.size()));
        std::array<char, 16384> text;
        std::size_t got = 0;
        while (SSL_read_ex(ssl_.get(), text.data(), text.size(), &got) == 1) {
            if (std::string_view(text.data(), got) == "end") {
                SSL_shutdown(ssl_.get());
            } else {
                SSL_write(ssl_.get(), text.data(), static_cast<int>(got));
            }
        }
        return {};
    }
    NetworkResult Receive(std::span<std::uint8_t> into, std::size_t& got, unsigned) override {
        // A byte or two at a time: no end of a record may be taken for granted.
        const int count = BIO_read(SSL_get_wbio(ssl_.get()), into.data(),
                                   static_cast<int>(std::min<std::size_t>(into.size(), 2)));
        if (count <= 0) return {End::kTimedOut};
        got = static_cast<std::size_t>(count);
        return {};
    }

  private:
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context_{SSL_CTX_new(TLS_server_method()),
                                                               SSL_CTX_free};
    std::unique_ptr<SSL, decltype(&SSL_free)> ssl_{SSL_new(context_.get()), SSL_free};
};

struct OpensslTlsTest : testing::Test {
    OpensslTlsTest() {
        BIO* const pem = BIO_new_file(ToUtf8(caFile).c_str(), "w");
        EXPECT_EQ(PEM_write_bio_X509(pem, authority.certificate.get()), 1);
        BIO_free(pem);
    }

    TlsFailure Secure(const Identity& peer, const std::string& host) {
        return tls.Secure(std::make_unique<TlsServer>(peer), {host, caFile}, 1000, secured);
    }

    test::TempFolder folder;
    Identity authority{"", 3600, nullptr};
    Identity server{"DNS:mail.x.org,IP:127.0.0.1", 3600, &authority};
    Text caFile = folder.Path(u"ca.pem");
    OpensslTlsConnections tls;
    std::unique_ptr<TcpConnection> secured;
};

TEST_F(OpensslTlsTest, CarriesBytesBothWaysUntilTheServerEndsIt) {
    ASSERT_EQ(Secure(server, "mail.x.org"), TlsFailure::kNone);
    Bytes bytes(50'000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    ASSERT_TRUE(secured->Send(bytes).Ok());
    Bytes back;
    std::array<std::uint8_t, 512> piece;
    std::size_t got = 0;
    while (back.size() < bytes.size()) {
        ASSERT_TRUE(secured->Receive(piece, got, 1000).Ok());
        back.insert(back.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got));
    }
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(secured->Receive(piece, got, 1000).end, End::kTimedOut);
    ASSERT_TRUE(secured->Send(AsBytes("end")).Ok());
    EXPECT_EQ(secured->Receive(piece, got, 1000).end, End::kClosed);
}

TEST_F(OpensslTlsTest, AcceptsNobodyButTheHostWithACertificateThatIsValidAndTrusted) {
    EXPECT_EQ(Secure(server, "127.0.0.1"), TlsFailure::kNone);
    EXPECT_EQ(Secure(server, "127.0.0.2"), TlsFailure::kWrongHost);
    EXPECT_EQ(Secure(server, "x.org"), TlsFailure::kWrongHost);
    EXPECT_EQ(Secure({"DNS:mail.x.org", -3600, &authority}, "mail.x.org"), TlsFailure::kExpired);
    EXPECT_EQ(Secure({"DNS:mail.x.org", 3600, nullptr}, "mail.x.org"), TlsFailure::kUntrusted);
    caFile.clear();  // the system's store, in which nobody vouches for this server
    secured = nullptr;
    EXPECT_EQ(Secure(server, "mail.x.org"), TlsFailure::kUntrusted);
    caFile = folder.Path(u"missing.pem");
    EXPECT_EQ(Secure(server, "mail.x.org"), TlsFailure::kTrustStore);
    EXPECT_EQ(secured, nullptr);
}

TEST_F(OpensslTlsTest, AServerThatSaysNothingIsWaitedForWithPatience) {
    test::FakeTcp silent;
    silent.replies = {""};
    silent.silence = {End::kGivenUp};
    test::FakePatience patience;
    std::unique_ptr<TcpConnection> plain;
    EXPECT_TRUE(silent.Connect({}, 25, patience, plain).Ok());
    EXPECT_EQ(tls.Secure(std::move(plain), {"mail.x.org", caFile}, 1000, secured),
              TlsFailure::kGivenUp);
}

}  // namespace
}  // namespace orma
