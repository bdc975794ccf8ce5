#include <utility>

#include "stream/jstream_smtp.h"

namespace orma {

Text TextOf(SmtpOpenResult result) {
    using enum SmtpOpenResult;
    static constexpr std::pair<SmtpOpenResult, const char16_t*> kTexts[] = {
        {kRefused, u"Server found,\nbut doesn't respond."},
        {kSilent, u"Server found,\nbut doesn't respond."},
        {kNotFound, u"Server not found."},
        {kLogInRefused, u"Wrong username\nor password."},
        {kNoTls, u"Server offers\nno TLS."},
        {kUnsafeUpgrade, u"Clear text after STARTTLS:\nconnection not safe."},
        {kTrustStore, u"Cannot read the trusted\ncertificates."},
        {kWrongHost, u"Certificate is for\nanother server name."},
        {kExpired, u"Certificate of the server\nis expired."},
        {kUntrusted, u"Certificate of the server\nis not trusted."},
        {kHandshake, u"No TLS connection\nwith the server."},
        {kNoLogIn, u"Server offers no log-in\nthat is known here."},
        {kNoDigest, u"No log-in: this system\nrefuses MD5."},
    };
    for (const auto& [known, text] : kTexts)
        if (known == result) return text;
    return u"Unspecified error";
}

}  // namespace orma
