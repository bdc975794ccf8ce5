#include "platform/curl/curl_ftp_codes.h"

#include <curl/curl.h>

namespace orma {
namespace {

// X509_V_ERR_UNSPECIFIED. libcurl begins with it, compares the names first and asks for the verdict
// on the chain only then; a bad chain ends the handshake before all that.
constexpr long kNotAsked = 1;

// X509_V_ERR_CERT_NOT_YET_VALID and X509_V_ERR_CERT_HAS_EXPIRED.
constexpr long kNotYetValid = 9;
constexpr long kExpired = 10;

FtpCode CertificateCode(long verifyResult) {
    if (verifyResult == 0 || verifyResult == kNotAsked) return kFtpCertificateName;
    if (verifyResult == kNotYetValid || verifyResult == kExpired) return kFtpCertificateDate;
    return kFtpCertificateIssuer;
}

FtpCode CodeOf(int curlCode, long verifyResult) {
    switch (curlCode) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_URL_MALFORMAT:
            return kFtpNameNotResolved;
        case CURLE_COULDNT_CONNECT:
            return kFtpCannotConnect;
        case CURLE_OPERATION_TIMEDOUT:
        case CURLE_FTP_ACCEPT_TIMEOUT:
            return kFtpTimeout;
        case CURLE_ABORTED_BY_CALLBACK:
            return kFtpCancelled;
        case CURLE_PEER_FAILED_VERIFICATION:
            return CertificateCode(verifyResult);
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_ENGINE_NOTFOUND:
        case CURLE_SSL_CIPHER:
        case CURLE_USE_SSL_FAILED:
            return kFtpNotSecure;
        case CURLE_LOGIN_DENIED:
        case CURLE_QUOTE_ERROR:
        case CURLE_UPLOAD_FAILED:
        case CURLE_REMOTE_ACCESS_DENIED:
        case CURLE_REMOTE_FILE_NOT_FOUND:
        case CURLE_FTP_COULDNT_RETR_FILE:
        case CURLE_FTP_PORT_FAILED:
        case CURLE_WEIRD_SERVER_REPLY:
            return kFtpRefused;
        default:
            return kFtpConnectionLost;
    }
}

}  // namespace

FtpResult Refusal(const FtpReply& reply, std::string_view secret) {
    return {kFtpRefused, reply.Number(), reply.Words(secret)};
}

FtpResult FailureOf(int curlCode, long verifyResult, const FtpReply& reply,
                    std::string_view secret) {
    // A server without TLS answers anything at all; what matters is that there is none.
    const bool noTls = curlCode == CURLE_USE_SSL_FAILED;
    if (reply.Number() >= 400 && !noTls) return Refusal(reply, secret);
    const FtpCode code = CodeOf(curlCode, verifyResult);
    if (code != kFtpRefused) return {code, 0, {}};
    return reply.Complete() ? Refusal(reply, secret) : FtpResult{kFtpConnectionLost, 0, {}};
}

}  // namespace orma
