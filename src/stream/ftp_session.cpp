#include "stream/ftp_session.h"

#include <algorithm>

namespace orma {
namespace {

constexpr int kImplicitTlsPort = 990;
constexpr std::uint32_t kShortTimeoutMs = 10;
constexpr std::int64_t kBeyondEveryPort = 100'000;

}  // namespace

FtpServerText SplitFtpServer(const Text& server, int usualPort) {
    const std::size_t colon = server.rfind(u':');
    if (colon == Text::npos || colon == 0) return {server, usualPort};
    std::size_t at = colon + 1;
    const bool negative = at < server.size() && server[at] == u'-';
    if (at < server.size() && (server[at] == u'-' || server[at] == u'+')) ++at;
    std::int64_t port = 0;
    for (; at < server.size() && server[at] >= u'0' && server[at] <= u'9'; ++at)
        port = std::min(port * 10 + (server[at] - u'0'), kBeyondEveryPort);
    return {server.substr(0, colon), static_cast<int>(negative ? -port : port)};
}

FtpSession::FtpSession(FtpServices services, const FtpAccount& account, FtpManner manner)
    : services_(services) {
    Connect(account, manner);
}

void FtpSession::Connect(const FtpAccount& account, FtpManner manner) {
    Close();
    client_ = services_.clients.Create(services_.patience, result_);
    if (client_ == nullptr) {
        // A fault of this machine, which no further attempt mends: told also where those of the
        // network are passed over.
        if (!manner.silent) services_.report.ReportSystemFailure(u"InternetOpen", result_.code);
        return;
    }
    result_ = {};
    if (account.server.empty()) {
        result_.code = kFtpWrongState;
        return;
    }
    if (account.server.size() > kLongestFtpServer) {
        result_.code = kFtpNameNotResolved;
    } else {
        const bool implicit = account.security == TransportSecurity::kImplicit;
        const FtpServerText server = implicit ? SplitFtpServer(account.server, kImplicitTlsPort)
                                              : SplitFtpServer(account.server);
        result_ = client_->Connect({.host = server.host,
                                    .port = server.port,
                                    .user = account.user,
                                    .password = account.password,
                                    .passive = account.passive,
                                    .security = account.security,
                                    .caFile = account.caFile,
                                    .connectTimeoutMs = manner.shortTimeout ? kShortTimeoutMs : 0});
    }
    if (!result_.Ok()) Fail(u"InternetConnect", manner);
}

void FtpSession::Fail(const Text& operation, FtpManner manner) {
    if (manner.silent || result_.code == kFtpCancelled) return;
    services_.report.ReportInternetFailure(operation, result_.code, result_.reply);
}

void FtpSession::Close() {
    if (client_ != nullptr) client_->Disconnect();
    client_.reset();
}

}  // namespace orma
