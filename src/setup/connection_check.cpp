#include "setup/connection_check.h"

#include "stream/connection_test.h"

namespace orma {
namespace {

using End = ConnectionVerdict::End;

constexpr int kNotLoggedIn = 530;  // RFC 959, 4.2.2

Text ProtectionWords(TransportSecurity security) {
    return security == TransportSecurity::kNone ? u", in clear text."
                                                : u", protected by TLS; the certificate is good.";
}

/// The end of a sentence: what the server itself said.
Text ServerWords(const FtpResult& result) {
    return result.reply.empty() ? Text(u".") : Text(u". The server says: ") + result.reply;
}

/// Why no connection or log-in came about.
Text FtpWords(const FtpResult& result, const Text& server, Storage& storage) {
    const Text said = ServerWords(result);
    switch (result.code) {
        case kFtpTimeout:
            return u"Nobody answers at " + server + u".";
        case kFtpRefused:
            return (result.replyNumber == kNotLoggedIn ? u"User or password are wrong"
                                                       : u"The server refuses") +
                   said;
        case kFtpBadName:
        case kFtpWrongPassword:
            return u"User or password cannot be right" + said;
        case kFtpNameNotResolved:
            return u"There is no server named " + SplitFtpServer(server).host +
                   u", or no name service here.";
        case kFtpCannotConnect:
            return u"Nobody listens at " + server + u": a wrong port, or a firewall.";
        case kFtpConnectionLost:
            return u"The server broke the connection off" + said;
        case kFtpCertificateDate:
            return u"The certificate of the server is expired, or this machine's clock is wrong.";
        case kFtpCertificateName:
            return u"The certificate is for another server name: use that one.";
        case kFtpCertificateIssuer:
            return u"The certificate of the server is not trusted: name its authority under "
                   u"Publishing.";
        case kFtpNotSecure:
            return u"No TLS connection with the server: mostly a wrong port or kind of protection.";
        default:
            return FormatText("No connection (%u). ", static_cast<unsigned>(result.code)) +
                   storage.ErrorText(result.code);
    }
}

}  // namespace

ConnectionVerdict CheckFtpAccount(const FtpAccount& account, const NetworkPorts& network,
                                  FileServices files, Patience& patience) {
    const auto [loggedIn, result] = TestFtpAccount(
        account, {.clients = network.ftp, .report = files.report, .patience = patience});
    if (result.Ok()) return {End::kOk, u"Logged in" + ProtectionWords(account.security)};
    if (result.code == kFtpCancelled) return {End::kCancelled, u"Cancelled."};
    if (loggedIn && (result.code == kFtpRefused || result.code == kFtpBadName))
        return {End::kRefused,
                u"Logged in, but not into the folder " + account.folder + ServerWords(result)};
    return {End::kRefused, FtpWords(result, account.server, files.storage)};
}

ConnectionVerdict CheckMailAccount(const SmtpAccount& account, const NetworkPorts& network,
                                   FileServices files, Patience& patience) {
    std::uint32_t bytesSent = 0;
    const MailServices services{.tcp = network.tcp,
                                .tls = network.tls,
                                .hash = network.hash,
                                .outbox = network.outbox,
                                .files = files,
                                .patience = patience,
                                .bytesSent = bytesSent};
    const SmtpOpenResult result = TestMailLogIn(account, services);
    if (result == SmtpOpenResult::kOk) {
        const Text done = account.authenticate ? u"Logged in" : u"The server answers";
        return {End::kOk, done + ProtectionWords(account.security)};
    }
    if (result == SmtpOpenResult::kGivenUp) return {End::kCancelled, u"Cancelled."};
    Text words = TextOf(result);
    for (char16_t& unit : words)
        if (unit == u'\n') unit = u' ';
    return {End::kRefused, words};
}

}  // namespace orma
