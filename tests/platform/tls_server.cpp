#include "platform/tls_server.h"

#include <array>

#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace orma::test {

Identity MakeIdentity(const std::string& subjectAltName, long seconds, const Identity* issuer) {
    Identity made{std::unique_ptr<X509, FreeOpenssl>(X509_new()),
                  std::unique_ptr<EVP_PKEY, FreeOpenssl>(EVP_EC_gen("P-256"))};
    X509* const x = made.certificate.get();
    X509_set_version(x, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(x), issuer == nullptr ? 1 : 2);
    X509_gmtime_adj(X509_getm_notBefore(x), -7200);
    X509_gmtime_adj(X509_getm_notAfter(x), seconds);
    X509_set_pubkey(x, made.key.get());
    const std::string name = subjectAltName.empty() ? "Authority" : "Server";
    X509_NAME_add_entry_by_txt(X509_get_subject_name(x), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
    X509_set_issuer_name(x,
                         X509_get_subject_name(issuer == nullptr ? x : issuer->certificate.get()));
    const bool isAuthority = subjectAltName.empty();
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(
        nullptr, nullptr, isAuthority ? NID_basic_constraints : NID_subject_alt_name,
        isAuthority ? "critical,CA:TRUE" : subjectAltName.c_str());
    X509_add_ext(x, extension, -1);
    X509_EXTENSION_free(extension);
    EXPECT_GT(X509_sign(x, (issuer == nullptr ? made : *issuer).key.get(), EVP_sha256()), 0);
    return made;
}

std::string Pem(const Identity& identity) {
    BIO* const memory = BIO_new(BIO_s_mem());
    PEM_write_bio_X509(memory, identity.certificate.get());
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory, &text);
    const std::string pem(text, static_cast<std::size_t>(size));
    BIO_free(memory);
    return pem;
}

TlsServer::TlsServer(const Identity& identity) : context_(SSL_CTX_new(TLS_server_method())) {
    SSL_CTX_use_certificate(context_.get(), identity.certificate.get());
    SSL_CTX_use_PrivateKey(context_.get(), identity.key.get());
    ssl_.reset(SSL_new(context_.get()));
    SSL_set_bio(ssl_.get(), BIO_new(BIO_s_mem()), BIO_new(BIO_s_mem()));
    SSL_set_accept_state(ssl_.get());
}

NetworkResult TlsServer::Send(ByteSpan bytes) {
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

NetworkResult TlsServer::Receive(std::span<std::uint8_t> into, std::size_t& got, unsigned) {
    // A byte or two at a time: no end of a record may be taken for granted.
    const int count = BIO_read(SSL_get_wbio(ssl_.get()), into.data(),
                               static_cast<int>(std::min<std::size_t>(into.size(), 2)));
    if (count <= 0) return {NetworkResult::End::kTimedOut};
    got = static_cast<std::size_t>(count);
    return {};
}

}  // namespace orma::test
