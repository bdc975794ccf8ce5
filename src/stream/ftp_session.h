#pragma once

#include <memory>

#include "stream/ftp_account.h"

namespace orma {

/// Longest server text that is accepted, in characters: a host name has at most 253, and a port
/// five more. A longer one is a name that cannot be resolved.
inline constexpr std::size_t kLongestFtpServer = 260;

/// A server text taken apart.
struct FtpServerText {
    Text host;
    int port = 21;
};

/// Splits a server text at its last colon, but for a colon in the first place, which belongs to the
/// name. The port is the signed decimal number behind it, as far as its digits go; none is 0, the
/// service's usual port. `usualPort` holds where there is no colon.
[[nodiscard]] FtpServerText SplitFtpServer(const Text& server, int usualPort = 21);

/// How FtpSession connects.
struct FtpManner {
    bool silent = false;        // failures are not reported: the caller only asks
    bool shortTimeout = false;  // gives up after 10 ms; nobody asks for it at present
};

/// One log-in to one FTP server. Blocking, UI thread.
class FtpSession {
  public:
    /// Connects; failures show in IsConnected.
    FtpSession(FtpServices services, const FtpAccount& account, FtpManner manner = {});
    ~FtpSession() { Close(); }
    FtpSession(const FtpSession&) = delete;
    FtpSession& operator=(const FtpSession&) = delete;

    /// Closes what is open and connects. Failures are reported as "InternetOpen" or
    /// "InternetConnect", unless silent or wished by the user; an empty server text fails without a
    /// word.
    void Connect(const FtpAccount& account, FtpManner manner = {});

    [[nodiscard]] bool IsConnected() const { return client_ != nullptr && client_->IsConnected(); }

    /// Closes the connection, then what carries it. May be called any number of times.
    void Close();

    /// Why the last Connect failed; success while connected.
    [[nodiscard]] const FtpResult& LastResult() const { return result_; }

    /// The connection; only while IsConnected.
    [[nodiscard]] FtpClient& Client() { return *client_; }

  private:
    void Fail(const Text& operation, FtpManner manner);

    FtpServices services_;
    std::unique_ptr<FtpClient> client_;
    FtpResult result_;
};

}  // namespace orma
